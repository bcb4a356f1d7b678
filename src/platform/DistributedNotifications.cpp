// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/DistributedNotifications.h"

namespace brevok {

DistributedNotifications::DistributedNotifications(QObject *parent)
    : QObject(parent)
{
}

DistributedNotifications::~DistributedNotifications() = default;

} // namespace brevok
