// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QImage>
#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <memory>

#include <xcb/xcb.h>

namespace brevok::testing {

/// A tray of an X11 bar that gives each item the width it asks for, as some bars do. On a connection of its
/// own to $DISPLAY; destroying it is as if its program had crashed.
class XembedTray final {
public:
    /// Where the bar begins on the screen.
    static constexpr qint16 left = 200;

    XembedTray(const QColor &colour, int height)
        : m_connection(xcb_connect(nullptr, nullptr))
        , m_screen(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data)
        , m_height(height)
        , m_events(xcb_get_file_descriptor(m_connection), QSocketNotifier::Read)
    {
        m_window = xcb_generate_id(m_connection);
        const std::array<quint32, 2> values{colour.rgb() & 0xffffffU, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_screen->root, left, 0, 400,
            static_cast<quint16>(height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
            XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values.data());
        xcb_map_window(m_connection, m_window);
        const xcb_atom_t selection = atom("_NET_SYSTEM_TRAY_S0");
        xcb_set_selection_owner(m_connection, m_window, selection, XCB_CURRENT_TIME);
        xcb_client_message_event_t announcement{};
        announcement.response_type = XCB_CLIENT_MESSAGE;
        announcement.format = 32;
        announcement.window = m_screen->root;
        announcement.type = atom("MANAGER");
        announcement.data.data32[1] = selection;
        announcement.data.data32[2] = m_window;
        xcb_send_event(m_connection, 0, m_screen->root, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
            reinterpret_cast<const char *>(&announcement));
        xcb_flush(m_connection);
        QObject::connect(&m_events, &QSocketNotifier::activated, [this] { handleEvents(); });
    }
    ~XembedTray()
    {
        m_events.setEnabled(false);
        xcb_disconnect(m_connection);
    }
    Q_DISABLE_COPY_MOVE(XembedTray)

    [[nodiscard]] int items() const { return m_items; }
    /// What the last docked item asked for, and got.
    [[nodiscard]] QSize itemSize() const { return m_itemSize; }
    /// Sets the colour of texts that the bar tells.
    void setTextColour(const QColor &colour)
    {
        const QRgba64 parts = colour.rgba64();
        const std::array<quint32, 12> values{parts.red(), parts.green(), parts.blue()};
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, atom("_NET_SYSTEM_TRAY_COLORS"),
            XCB_ATOM_CARDINAL, 32, values.size(), values.data());
        xcb_flush(m_connection);
    }
    /// What the item shows.
    [[nodiscard]] QImage itemPicture()
    {
        // Waiting for one answer also reads events, of which the socket then tells no more.
        handleEvents();
        const auto cookie = xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_item, 0, 0,
            static_cast<quint16>(m_itemSize.width()), static_cast<quint16>(m_itemSize.height()), ~0U);
        const std::unique_ptr<xcb_get_image_reply_t, decltype(&free)> pixels(
            xcb_get_image_reply(m_connection, cookie, nullptr), &free);
        return pixels ? QImage(xcb_get_image_data(pixels.get()), m_itemSize.width(), m_itemSize.height(),
                   QImage::Format_RGB32)
                            .copy()
                      : QImage();
    }

private:
    [[nodiscard]] xcb_atom_t atom(const QByteArray &name) const
    {
        const auto cookie =
            xcb_intern_atom(m_connection, 0, static_cast<quint16>(name.size()), name.constData());
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&free)> reply(
            xcb_intern_atom_reply(m_connection, cookie, nullptr), &free);
        return reply->atom;
    }

    void handleEvents()
    {
        xcb_flush(m_connection);
        while (auto *const raw = xcb_poll_for_event(m_connection)) {
            const std::unique_ptr<xcb_generic_event_t, decltype(&free)> event(raw, &free);
            const auto *const message = reinterpret_cast<const xcb_client_message_event_t *>(raw);
            if ((raw->response_type & 0x7f) == XCB_CLIENT_MESSAGE && message->data.data32[1] == 0
                && message->type == atom("_NET_SYSTEM_TRAY_OPCODE")) {
                m_item = message->data.data32[2];
                ++m_items;
                const quint32 mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
                xcb_change_window_attributes(m_connection, m_item, XCB_CW_EVENT_MASK, &mask);
                giveRoom();
                xcb_reparent_window(m_connection, m_item, m_window, 0, 0);
                xcb_map_window(m_connection, m_item);
                xcb_flush(m_connection);
            } else if ((raw->response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
                giveRoom();
            }
        }
    }

    /// As wide as the item's hints say, as high as the bar.
    void giveRoom()
    {
        const auto cookie = xcb_get_property(
            m_connection, 0, m_item, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS, 0, 18);
        const std::unique_ptr<xcb_get_property_reply_t, decltype(&free)> hints(
            xcb_get_property_reply(m_connection, cookie, nullptr), &free);
        if (!hints || xcb_get_property_value_length(hints.get()) < 28) {
            return;
        }
        const quint32 width = static_cast<const quint32 *>(xcb_get_property_value(hints.get()))[5];
        m_itemSize = QSize(static_cast<int>(width), m_height);
        const std::array<quint32, 2> size{width, static_cast<quint32>(m_height)};
        xcb_configure_window(
            m_connection, m_item, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size.data());
        xcb_flush(m_connection);
    }

    xcb_connection_t *m_connection;
    xcb_screen_t *m_screen;
    xcb_window_t m_window = 0;
    xcb_window_t m_item = 0;
    int m_height;
    int m_items = 0;
    QSize m_itemSize;
    QSocketNotifier m_events;
};

} // namespace brevok::testing
