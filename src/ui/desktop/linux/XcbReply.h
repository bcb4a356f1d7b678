// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace brevok {

struct XcbFree {
    void operator()(void *reply) const { std::free(reply); } // xcb allocates with malloc
};

/// What the X server answered; null after an error, which is dropped.
template <typename Reply> using XcbReply = std::unique_ptr<Reply, XcbFree>;

template <typename Reply, typename Cookie>
XcbReply<Reply> xcbAnswer(Reply *(*fetch)(xcb_connection_t *, Cookie, xcb_generic_error_t **),
    xcb_connection_t *connection, Cookie cookie)
{
    xcb_generic_error_t *error = nullptr;
    XcbReply<Reply> reply(fetch(connection, cookie, &error));
    const XcbReply<xcb_generic_error_t> dropped(error);
    return reply;
}

/// Sends a request whose failure does not matter, such as one about a window that may be gone by now.
inline void xcbIgnore(xcb_connection_t *connection, xcb_void_cookie_t cookie)
{
    xcb_discard_reply(connection, cookie.sequence);
}

} // namespace brevok
