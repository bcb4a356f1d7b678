// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <optional>

namespace brevok {

/// The application's side of org.freedesktop.Application, through which a desktop starts it from the menu and
/// calls it again. Main thread.
class DesktopActivation final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DesktopActivation)

public:
    explicit DesktopActivation(QObject *parent = nullptr);
    ~DesktopActivation() override;

    /// Registers the object on @p bus.
    void publish(QDBusConnection bus);

    /// From now on the desktop's calls run @p carryOut with the name of an action, which is empty when the
    /// program is to show itself; so does, at once, one that came before: a desktop starts the program with
    /// its call.
    void setHandler(std::function<void(const QString &action)> carryOut);

public Q_SLOTS: // the bus interface, in its own spelling
    void Activate(const QVariantMap &platformData);
    /// The application opens no files: it is shown.
    void Open(const QStringList &uris, const QVariantMap &platformData);
    /// One of the desktop entry, or of a notice that outlived the program that showed it.
    void ActivateAction(
        const QString &actionName, const QVariantList &parameter, const QVariantMap &platformData);

private:
    void carryOut(const QString &action);

    std::function<void(const QString &)> m_carryOut;
    std::optional<QString> m_waiting;
};

} // namespace brevok
