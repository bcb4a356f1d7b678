// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QDBusConnection>

#include <optional>

namespace brevok {

/// Installs this very program as the system's helper, beside a packaged one if there is any, and removes it
/// again: the program, the bus's and systemd's descriptions of its service, and polkit's of its actions. Run
/// as root. Blocks.
class HelperSetup final {
public:
    using ErrorSlot = std::optional<BrevokError> *;

    /// Everything goes under @p prefix, the system's own places when that is empty. @p bus is told; nobody is
    /// when it is not connected.
    HelperSetup(QString prefix, QDBusConnection bus);

    /// Installs, or replaces an older one, and ends that.
    [[nodiscard]] bool install(ErrorSlot error) const;
    /// Removes and ends what install() made; none there is a success.
    [[nodiscard]] bool remove(ErrorSlot error) const;
    /// Obeys the lines "install" and "remove" on standard input until its end. Says "ready" first, then
    /// "done" or "failed: WHY" for each.
    void obeyStandardInput() const;

private:
    struct File {
        QString path;
        QString text; ///< the name of what is written
    };
    [[nodiscard]] QList<File> files() const;
    [[nodiscard]] QString program() const;
    [[nodiscard]] QByteArray filled(const QString &text) const;
    void endRunningHelper() const;
    void tellEverybody() const;

    QString m_prefix;
    QDBusConnection m_bus;
};

} // namespace brevok
