// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/widgets/FocusReturn.h"

#include <QWidget>
#include <QWindow>

namespace brevok {

void stayAbove(QWidget &window, const QWidget *below)
{
    if (below != nullptr && below->windowHandle() != nullptr) {
        window.winId();
        window.windowHandle()->setTransientParent(below->windowHandle());
    }
}

// The window manager would choose another window, and what is typed next would go there. Where the window is
// below the one that has the focus, the library does not ask the window manager, which then chooses later.
bool returnFocus(const QWidget &ended, QWidget *window)
{
    if (window == nullptr || !window->isVisible()) {
        return false;
    }
    if (ended.windowHandle() != nullptr) {
        ended.windowHandle()->setTransientParent(nullptr);
    }
    window->activateWindow();
    return true;
}

} // namespace brevok
