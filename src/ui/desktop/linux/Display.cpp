// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/desktop/linux/Display.h"

#include "platform/LocalSockets.h"
#include "ui/desktop/linux/XcbReply.h"
#include "ui/desktop/WindowBlending.h"

#include <QDir>
#include <QGuiApplication>
#include <QLibraryInfo>

namespace brevok {

bool canOpenX11Display()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const bool open = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return open;
}

bool canReachWaylandDisplay()
{
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
    if (plugins.entryList({QStringLiteral("libqwayland*")}).isEmpty()) {
        return false;
    }
    if (qEnvironmentVariableIsSet("WAYLAND_SOCKET")) {
        return true; // an open connection that was handed down
    }
    const QString named = qEnvironmentVariable("WAYLAND_DISPLAY", QStringLiteral("wayland-0"));
    return answersAtSocket(QDir(qEnvironmentVariable("XDG_RUNTIME_DIR")).filePath(named));
}

int x11Screen()
{
    int display = 0;
    int screen = 0;
    char *host = nullptr;
    xcb_parse_display(nullptr, &host, &display, &screen);
    const XcbReply<char> freed(host);
    return screen;
}

bool windowsAreBlended()
{
    const auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || x11->connection() == nullptr) {
        return true; // every Wayland compositor does
    }
    // Who blends owns this selection: Extended Window Manager Hints 1.5, "_NET_WM_CM_Sn".
    const QByteArray selection = "_NET_WM_CM_S" + QByteArray::number(x11Screen());
    const auto atom = xcbAnswer(xcb_intern_atom_reply, x11->connection(),
        xcb_intern_atom(x11->connection(), 0, static_cast<quint16>(selection.size()), selection.constData()));
    const auto owner = atom ? xcbAnswer(xcb_get_selection_owner_reply, x11->connection(),
                           xcb_get_selection_owner(x11->connection(), atom->atom))
                            : nullptr;
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace brevok
