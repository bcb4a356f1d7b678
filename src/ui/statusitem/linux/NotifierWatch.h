// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>
#include <QObject>

#include <optional>

namespace brevok {

/// Whether some host on the bus shows items of org.kde.StatusNotifierItem. It asks as soon as it is made, so
/// that the answer is there when an item wants it.
class NotifierWatch final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NotifierWatch)

public:
    explicit NotifierWatch(QDBusConnection bus);
    ~NotifierWatch() override;

    /// Goes on with another connection, on which nobody is known yet.
    void use(const QDBusConnection &bus);
    [[nodiscard]] const QDBusConnection &bus() const { return m_bus; }

    /// Whether somebody registers items.
    [[nodiscard]] bool isRunning() const { return m_running; }
    /// Nothing before it is known.
    [[nodiscard]] std::optional<bool> hasHost() const { return m_host; }

    /// Reads an answer that arrived while no event loop ran.
    void catchUp();
    /// Has the item with the bus name @p item registered.
    void registerItem(const QString &item);

Q_SIGNALS:
    void busChanged();
    /// Somebody who registers items is there from now on.
    void started();
    /// Also when it is known for the first time.
    void hostChanged();

private Q_SLOTS:
    void askForHost();
    void busLost();

private:
    void lookForWatcher();
    void readAnswer();
    void setRunning(bool running);
    void setHost(bool host);

    QDBusConnection m_bus;
    QDBusServiceWatcher m_owner;
    std::optional<QDBusPendingCall> m_question; ///< for the watcher, until it is answered
    bool m_running = false;
    std::optional<bool> m_host;
};

} // namespace brevok
