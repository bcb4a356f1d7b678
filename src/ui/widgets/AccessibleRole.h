// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAccessible>

class QWidget;

namespace brevok {

/// Tells assistive technology what a self-drawn @p view is. A property "permille" of it is told as its value;
/// while a property "animating" of it is false, it counts as hidden.
void setAccessibleRole(QWidget &view, QAccessible::Role role);

} // namespace brevok
