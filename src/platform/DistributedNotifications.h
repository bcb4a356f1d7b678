// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>

namespace brevok {

/// Messages between the user's processes: a name and an object, no payload. Main thread; posting never
/// blocks.
class DistributedNotifications : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DistributedNotifications)

public:
    explicit DistributedNotifications(QObject *parent = nullptr);
    ~DistributedNotifications() override;

    /// Delivers the notification to every observer in other processes at once.
    virtual void post(const QString &name, const QString &object) = 0;

    /// From now on posted() is emitted for notifications with this name and object that other processes post.
    virtual void observe(const QString &name, const QString &object) = 0;

Q_SIGNALS:
    void posted(const QString &name, const QString &object);
};

} // namespace brevok
