// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/MountWatch.h"

#include <QSocketNotifier>

#include <fcntl.h>

namespace brevok {

MountWatch::MountWatch(QObject *parent)
    : QObject(parent)
    , m_table(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC))
{
    if (m_table) {
        // A change is an exceptional condition of the file, and asking for it takes note of it.
        m_notifier = new QSocketNotifier(m_table.get(), QSocketNotifier::Exception, this);
        connect(m_notifier, &QSocketNotifier::activated, this, &MountWatch::changed);
    }
}

MountWatch::~MountWatch()
{
    delete m_notifier; // before its file is closed
}

} // namespace brevok
