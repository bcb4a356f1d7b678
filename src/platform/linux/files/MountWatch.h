// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <QObject>

class QSocketNotifier;

namespace brevok {

/// Tells when the kernel's table of mounts has changed. Without the table it stays silent. Main thread.
class MountWatch final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MountWatch)

public:
    explicit MountWatch(QObject *parent = nullptr);
    ~MountWatch() override;

Q_SIGNALS:
    void changed();

private:
    FileDescriptor m_table;
    QSocketNotifier *m_notifier = nullptr;
};

} // namespace brevok
