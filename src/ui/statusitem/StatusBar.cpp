// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/statusitem/StatusBar.h"

namespace brevok {

StatusItem::StatusItem(QObject *parent)
    : QObject(parent)
{
}

StatusItem::~StatusItem() = default;

} // namespace brevok
