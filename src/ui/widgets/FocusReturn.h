// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

class QWidget;

namespace brevok {

/// Keeps @p window above @p below, where there is one, whose child it need not be.
void stayAbove(QWidget &window, const QWidget *below);

/// Gives the keyboard to @p window, which @p ended has lain above until it was taken off the screen; nothing
/// where @p window is off the screen too. Whether it was asked for.
bool returnFocus(const QWidget &ended, QWidget *window);

} // namespace brevok
