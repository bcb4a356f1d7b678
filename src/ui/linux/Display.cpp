// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/linux/Display.h"

#include <xcb/xcb.h>

namespace brevok {

bool canOpenX11Display()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const bool open = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return open;
}

} // namespace brevok
