// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

namespace brevok {

/// A button of a notice.
struct UserNotificationAction {
    QString name; ///< one of the program's, which it also does for the desktop
    QString title; ///< that users read
};

/// A notice that the desktop shows and takes away again by itself.
struct UserNotification {
    QString title;
    QString informativeText; ///< plain text
    QList<UserNotificationAction> actions{}; ///< shown where the desktop can
};

/// Who decides whether a notice is shown, and does what is clicked.
class UserNotificationCenterDelegate {
public:
    UserNotificationCenterDelegate() = default;
    virtual ~UserNotificationCenterDelegate() = default;
    Q_DISABLE_COPY_MOVE(UserNotificationCenterDelegate)

    [[nodiscard]] virtual bool shouldPresentNotification(const UserNotification &notification) = 0;
    virtual void didActivateNotification(const QString &action) = 0;
};

/// What shows the user notices. Main thread; delivering never blocks.
class UserNotificationCenter {
public:
    UserNotificationCenter() = default;
    virtual ~UserNotificationCenter() = default;
    Q_DISABLE_COPY_MOVE(UserNotificationCenter)

    /// Whether this system can have one at all.
    [[nodiscard]] virtual bool exists() const = 0;
    /// @p delegate outlives the centre, or takes itself away with null.
    void setDelegate(UserNotificationCenterDelegate *delegate) { m_delegate = delegate; }
    /// Shows @p notification unless the delegate refuses; where nobody shows notices, it is lost.
    void deliver(const UserNotification &notification)
    {
        if (exists() && (m_delegate == nullptr || m_delegate->shouldPresentNotification(notification))) {
            present(notification);
        }
    }

protected:
    virtual void present(const UserNotification &notification) = 0;
    /// The user clicked a button of some notice that was presented.
    void activated(const QString &action)
    {
        if (m_delegate != nullptr) {
            m_delegate->didActivateNotification(action);
        }
    }

private:
    UserNotificationCenterDelegate *m_delegate = nullptr;
};

} // namespace brevok
