// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/RouteLookup.h"

namespace brevok {

RouteLookup::RouteLookup(QObject *parent)
    : QObject(parent)
{
}

RouteLookup::~RouteLookup() = default;

} // namespace brevok
