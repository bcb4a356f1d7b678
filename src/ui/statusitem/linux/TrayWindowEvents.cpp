// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/statusitem/linux/TrayWindow.h"

#include "foundation/Tasks.h"
#include "ui/desktop/linux/XcbReply.h"

namespace brevok {

namespace {

/// The event as the type that its response type promises.
template <typename Event> const Event &as(const void *event)
{
    return *static_cast<const Event *>(event);
}

quint8 typeOf(const void *event)
{
    constexpr quint8 sentByClient = 0x80;
    return static_cast<quint8>(as<xcb_generic_event_t>(event).response_type & ~sentByClient);
}

} // namespace

bool TrayWindow::nativeEventFilter(const QByteArray &eventType, void *message, qintptr * /*result*/)
{
    if (!m_wanted || eventType != "xcb_generic_event_t") {
        return false;
    }
    switch (typeOf(message)) {
    case XCB_CLIENT_MESSAGE: {
        const auto &event = as<xcb_client_message_event_t>(message);
        if (event.window == m_screen->root && event.type == m_atoms[Manager]
            && event.data.data32[1] == m_atoms[TraySelection]) {
            locateTray();
        }
        break;
    }
    case XCB_DESTROY_NOTIFY:
        if (as<xcb_destroy_notify_event_t>(message).window == m_tray && m_tray != 0) {
            undock();
            // Another one may have taken over before this end was heard of.
            locateTray();
        }
        break;
    case XCB_PROPERTY_NOTIFY: {
        const auto &event = as<xcb_property_notify_event_t>(message);
        if (event.window == m_tray && event.atom == m_atoms[TrayColours] && m_docked) {
            paint();
        }
        break;
    }
    default:
        break;
    }
    if (m_window != 0) {
        handleWindowEvent(message);
    }
    // Qt, too, reads the time of a click, which windows that want the focus then have to show.
    return false;
}

void TrayWindow::handleWindowEvent(const void *event)
{
    switch (typeOf(event)) {
    case XCB_REPARENT_NOTIFY: {
        const auto &reparented = as<xcb_reparent_notify_event_t>(event);
        if (reparented.window == m_window) {
            setDocked(reparented.parent != m_screen->root);
        }
        break;
    }
    case XCB_CONFIGURE_NOTIFY: {
        const auto &configured = as<xcb_configure_notify_event_t>(event);
        const QSize size(configured.width, configured.height);
        if (configured.window == m_window && size != m_size) {
            m_size = size;
            Q_EMIT changed();
        }
        break;
    }
    case XCB_DESTROY_NOTIFY:
        if (as<xcb_destroy_notify_event_t>(event).window == m_window) {
            m_window = 0;
            undock();
        }
        break;
    case XCB_EXPOSE: {
        const auto &exposed = as<xcb_expose_event_t>(event);
        if (exposed.window == m_window && exposed.count == 0 && m_docked) {
            paint();
        }
        break;
    }
    case XCB_BUTTON_PRESS: {
        const auto &pressed = as<xcb_button_press_event_t>(event);
        if (pressed.event == m_window && pressed.detail == XCB_BUTTON_INDEX_1) {
            const QPoint where(pressed.root_x, pressed.root_y);
            // After Qt has seen the event.
            onMain(this, [this, where] { Q_EMIT clicked(where); });
        }
        break;
    }
    case XCB_ENTER_NOTIFY: {
        const auto &entered = as<xcb_enter_notify_event_t>(event);
        if (entered.event == m_window) {
            Q_EMIT hovered({entered.root_x, entered.root_y});
        }
        break;
    }
    case XCB_LEAVE_NOTIFY:
        if (as<xcb_leave_notify_event_t>(event).event == m_window) {
            Q_EMIT left();
        }
        break;
    default:
        break;
    }
}

} // namespace brevok
