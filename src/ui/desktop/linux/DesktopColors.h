// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QPalette>

namespace brevok {

/// Follows the user's choice between light and dark windows, as the desktop's settings portal tells it, at
/// once when it changes. This version of Qt does that by itself only where a platform theme brings a dark
/// palette, as on KDE; such a palette is left alone. No call waits for the bus.
class DesktopColors final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DesktopColors)

public:
    explicit DesktopColors(const QDBusConnection &bus);
    ~DesktopColors() override;

    /// Goes on with another connection: what is chosen is asked anew.
    void use(const QDBusConnection &bus);

private Q_SLOTS:
    void settingChanged(const QString &space, const QString &key, const QDBusVariant &value);

private:
    void apply(uint scheme);

    QDBusConnection m_bus;
    bool m_darkened = false;
};

/// @p light with light and dark exchanged, the accent kept.
[[nodiscard]] QPalette darkened(const QPalette &light);

} // namespace brevok
