// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/ApplicationSearch.h"

namespace brevok {

ApplicationSearch::ApplicationSearch(QObject *parent)
    : QObject(parent)
{
}

ApplicationSearch::~ApplicationSearch() = default;

} // namespace brevok
