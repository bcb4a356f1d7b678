// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/HelperTool.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace brevok {

/// The helper's object on the bus. Calls that change something may ask the user for a password, unless that
/// is forbidden, which takes the time that it takes; they end without an answer once the helper has gone or
/// does not even say its version any more. The other calls wait for seconds.
class BusInstaller final : public InstallerOperations {
public:
    static constexpr QLatin1StringView busName{"com.tolvane.brevok.HelperTool"};

    BusInstaller(QDBusConnection bus, bool mayAsk);

    /// Whether somebody describes the object at all; @p installs: whether it can install.
    [[nodiscard]] bool introspect(bool *installs);

    /// Removes copies that killed processes left in the temporary folder.
    static void clearLeftovers();

    [[nodiscard]] int version() override;
    [[nodiscard]] InstallResult install(const InstallOrder &order) override;
    [[nodiscard]] bool removeItemAtPath(const QString &path, ErrorSlot error) override;
    [[nodiscard]] bool fileExistsAtPath(const QString &path) override;
    [[nodiscard]] bool fileExistsAtPath(const QString &path, bool *isDirectory) override;
    [[nodiscard]] bool isReadableFileAtPath(const QString &path) override;
    [[nodiscard]] bool isWritableFileAtPath(const QString &path) override;
    [[nodiscard]] bool isExecutableFileAtPath(const QString &path) override;
    [[nodiscard]] bool isDeletableFileAtPath(const QString &path) override;
    void setUID(quint32 user, quint32 permissions, const QString &item, bool recursive) override;

private:
    [[nodiscard]] QDBusMessage changingCall(const QString &method, const QVariantList &arguments) const;

    QDBusConnection m_bus;
    bool m_mayAsk;
};

} // namespace brevok
