// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/statusitem/linux/TrayWindow.h"

#include "foundation/Log.h"
#include "ui/desktop/linux/XcbReply.h"
#include "ui/statusitem/StatusItemImage.h"
#include "ui/statusitem/StatusItemLayout.h"

#include <QCoreApplication>
#include <QPainter>

#include <cstring>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

xcb_screen_t *screenOf(xcb_connection_t *connection, int number)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; number > 0 && screens.rem > 1; --number) {
        xcb_screen_next(&screens);
    }
    return screens.data;
}

QColor averageOf(const QImage &image)
{
    return image.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).pixelColor(0, 0);
}

} // namespace

TrayWindow::TrayWindow(xcb_connection_t *connection, int screen)
    : m_connection(connection)
    , m_screen(screenOf(connection, screen))
{
    const auto attributes = xcb_get_window_attributes(connection, m_screen->root);
    internAtoms(screen);
    QCoreApplication::instance()->installNativeEventFilter(this);
    // A tray that comes announces itself on the root window.
    const auto root = xcbAnswer(xcb_get_window_attributes_reply, connection, attributes);
    const quint32 mask = (root ? root->your_event_mask : 0U) | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection, m_screen->root, XCB_CW_EVENT_MASK, &mask);
}

TrayWindow::~TrayWindow()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
    blockSignals(true);
    setWanted(false);
}

void TrayWindow::internAtoms(int screen)
{
    const QByteArray selection = "_NET_SYSTEM_TRAY_S" + QByteArray::number(screen);
    const std::array<const char *, AtomCount> names{selection.constData(), "MANAGER",
        "_NET_SYSTEM_TRAY_OPCODE", "_NET_SYSTEM_TRAY_VISUAL", "_NET_SYSTEM_TRAY_COLORS", "_XEMBED_INFO",
        "_XEMBED", "_NET_WM_NAME", "UTF8_STRING"};
    std::array<xcb_intern_atom_cookie_t, AtomCount> cookies{};
    for (size_t i = 0; i < names.size(); ++i) {
        cookies.at(i) =
            xcb_intern_atom(m_connection, 0, static_cast<quint16>(std::strlen(names.at(i))), names.at(i));
    }
    for (size_t i = 0; i < names.size(); ++i) {
        const auto reply = xcbAnswer(xcb_intern_atom_reply, m_connection, cookies.at(i));
        m_atoms.at(i) = reply ? reply->atom : quint32{XCB_ATOM_NONE};
    }
}

void TrayWindow::setWanted(bool wanted)
{
    if (m_wanted == wanted) {
        return;
    }
    m_wanted = wanted;
    if (wanted) {
        locateTray();
    } else {
        undock();
    }
}

void TrayWindow::setWish(const QSize &pixels)
{
    if (m_wish != pixels) {
        m_wish = pixels;
        if (m_window != 0) {
            sizeHints();
            xcb_flush(m_connection);
        }
    }
}

void TrayWindow::setFace(const StatusItemFace &face, double lengthInPixels)
{
    m_face = face;
    m_length = lengthInPixels;
    if (m_docked) {
        paint();
    }
}

void TrayWindow::locateTray()
{
    // Under a grab, or the tray could go between the question and the wish to hear of its end.
    xcb_grab_server(m_connection);
    const auto owner = xcbAnswer(xcb_get_selection_owner_reply, m_connection,
        xcb_get_selection_owner(m_connection, m_atoms[TraySelection]));
    const Window known = std::exchange(m_tray, owner ? owner->owner : Window{XCB_WINDOW_NONE});
    // A tray may have been found before its own announcement is read.
    const bool isNew = m_tray != XCB_WINDOW_NONE && (m_tray != known || m_window == 0);
    if (isNew) {
        const quint32 mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_connection, m_tray, XCB_CW_EVENT_MASK, &mask);
    }
    xcb_ungrab_server(m_connection);
    if (isNew) {
        dock();
    }
    xcb_flush(m_connection);
}

void TrayWindow::dock()
{
    undock();
    m_visual = trayVisual();
    if (m_visual.depth != 24 && m_visual.depth != 32) {
        logLine(u"The tray has pictures of %1 bits."_s.arg(m_visual.depth));
        return;
    }
    createWindow(m_visual);
    constexpr quint32 requestDock = 0;
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = m_tray;
    request.type = m_atoms[TrayOpcode];
    request.data.data32[0] = XCB_CURRENT_TIME;
    request.data.data32[1] = requestDock;
    request.data.data32[2] = m_window;
    const auto *const bytes = reinterpret_cast<const char *>(&request);
    xcbIgnore(m_connection, xcb_send_event_checked(m_connection, 0, m_tray, XCB_EVENT_MASK_NO_EVENT, bytes));
}

void TrayWindow::createWindow(const Visual &visual)
{
    m_window = xcb_generate_id(m_connection);
    m_size = m_wish;
    if (visual.alpha) {
        m_colourMap = xcb_generate_id(m_connection);
        xcb_create_colormap(m_connection, XCB_COLORMAP_ALLOC_NONE, m_colourMap, m_screen->root, visual.id);
    }
    const quint32 events = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY
        | XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_ENTER_WINDOW
        | XCB_EVENT_MASK_LEAVE_WINDOW;
    // Background and border in the order of their masks; without a colour map of its own, the parent's.
    const quint32 background = visual.alpha ? 0U : quint32{XCB_BACK_PIXMAP_PARENT_RELATIVE};
    const std::array<quint32, 4> values{
        background, 0, events, visual.alpha ? m_colourMap : quint32{XCB_COPY_FROM_PARENT}};
    const quint32 mask = (visual.alpha ? XCB_CW_BACK_PIXEL : XCB_CW_BACK_PIXMAP) | XCB_CW_BORDER_PIXEL
        | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP;
    xcb_create_window(m_connection, visual.depth, m_window, m_screen->root, -1, -1,
        static_cast<quint16>(m_wish.width()), static_cast<quint16>(m_wish.height()), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, visual.id, mask, values.data());
    const std::array<quint32, 2> mappedByTray{0, 1};
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, m_atoms[XembedInfo],
        m_atoms[XembedInfo], 32, mappedByTray.size(), mappedByTray.data());
    const auto setText = [this](quint32 property, quint32 type, const QByteArray &text) {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, property, type, 8,
            static_cast<quint32>(text.size()), text.constData());
    };
    setText(m_atoms[NetWmName], m_atoms[Utf8String], "Tolvane Brevok");
    setText(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, "Tolvane Brevok");
    setText(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, QByteArrayLiteral("tolvane-brevok\0tolvane-brevok\0"));
    sizeHints();
}

void TrayWindow::sizeHints() const
{
    // The fields of WM_NORMAL_HINTS: only the least size is set, at its place after flags and four old
    // fields.
    constexpr quint32 minimumSize = 1U << 4;
    std::array<quint32, 18> hints{};
    hints[0] = minimumSize;
    hints[5] = static_cast<quint32>(m_wish.width());
    hints[6] = static_cast<quint32>(m_wish.height());
    xcbIgnore(m_connection,
        xcb_change_property_checked(m_connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NORMAL_HINTS,
            XCB_ATOM_WM_SIZE_HINTS, 32, hints.size(), hints.data()));
}

void TrayWindow::undock()
{
    if (m_window != 0) {
        // Together with its tray the window may be gone already.
        xcbIgnore(m_connection, xcb_destroy_window_checked(m_connection, std::exchange(m_window, 0)));
    }
    if (m_colourMap != 0) {
        xcb_free_colormap(m_connection, std::exchange(m_colourMap, 0));
    }
    xcb_flush(m_connection);
    m_wide = false;
    setDocked(false);
}

void TrayWindow::setDocked(bool docked)
{
    if (m_docked != docked) {
        m_docked = docked;
        Q_EMIT changed();
    }
}

TrayWindow::Visual TrayWindow::trayVisual() const
{
    const auto wished = xcbAnswer(xcb_get_property_reply, m_connection,
        xcb_get_property(m_connection, 0, m_tray, m_atoms[TrayVisual], XCB_ATOM_VISUALID, 0, 1));
    if (wished && wished->format == 32 && xcb_get_property_value_length(wished.get()) == 4) {
        quint32 id = 0;
        std::memcpy(&id, xcb_get_property_value(wished.get()), sizeof(id));
        for (auto depths = xcb_screen_allowed_depths_iterator(m_screen); depths.rem > 0;
             xcb_depth_next(&depths)) {
            auto visuals = xcb_depth_visuals_iterator(depths.data);
            for (; depths.data->depth == 32 && visuals.rem > 0; xcb_visualtype_next(&visuals)) {
                if (visuals.data->visual_id == id) {
                    return {id, 32, true};
                }
            }
        }
    }
    return {m_screen->root_visual, m_screen->root_depth, false};
}

std::optional<QColor> TrayWindow::trayTextColour() const
{
    const auto colours = xcbAnswer(xcb_get_property_reply, m_connection,
        xcb_get_property(m_connection, 0, m_tray, m_atoms[TrayColours], XCB_ATOM_CARDINAL, 0, 12));
    if (!colours || colours->format != 32 || xcb_get_property_value_length(colours.get()) < 12) {
        return {};
    }
    std::array<quint32, 3> parts{};
    std::memcpy(parts.data(), xcb_get_property_value(colours.get()), sizeof(parts));
    return QColor::fromRgba64(
        static_cast<quint16>(parts[0]), static_cast<quint16>(parts[1]), static_cast<quint16>(parts[2]));
}

QImage TrayWindow::background() const
{
    xcbIgnore(m_connection, xcb_clear_area_checked(m_connection, 0, m_window, 0, 0, 0, 0));
    const auto pixels = xcbAnswer(xcb_get_image_reply, m_connection,
        xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, 0, 0,
            static_cast<quint16>(m_size.width()), static_cast<quint16>(m_size.height()), ~0U));
    if (!pixels || xcb_get_image_data_length(pixels.get()) != m_size.width() * m_size.height() * 4) {
        return {};
    }
    return QImage(xcb_get_image_data(pixels.get()), m_size.width(), m_size.height(), QImage::Format_RGB32)
        .copy();
}

QImage TrayWindow::drawn(const std::optional<QColor> &barText)
{
    m_wide = statusitem::isWide(m_size, m_length, m_face.updates != 0, m_wide);
    const statusitem::Colours colours = statusitem::coloursFor(barText);
    if (!m_wide) {
        return statusitem::squareImage(qMin(m_size.width(), m_size.height()), m_face.updates, colours);
    }
    return m_face.isTemplate ? statusitem::tinted(m_face.image, colours.icon) : m_face.image;
}

void TrayWindow::paint()
{
    std::optional<QColor> barText = trayTextColour();
    QImage canvas;
    if (!m_visual.alpha) {
        canvas = background();
        if (!canvas.isNull() && !barText) {
            barText = statusitem::textColourOn(averageOf(canvas));
        }
    }
    if (canvas.isNull()) {
        canvas = QImage(m_size, QImage::Format_ARGB32_Premultiplied);
        canvas.fill(Qt::transparent);
    }
    QImage picture = drawn(barText);
    picture.setDevicePixelRatio(1);
    QPainter painter(&canvas);
    painter.drawImage(
        QPoint((m_size.width() - picture.width()) / 2, (m_size.height() - picture.height()) / 2), picture);
    painter.end();
    put(canvas);
}

void TrayWindow::put(const QImage &image)
{
    const xcb_gcontext_t context = xcb_generate_id(m_connection);
    // The tray may take the window with it at any time.
    xcbIgnore(m_connection, xcb_create_gc_checked(m_connection, context, m_window, 0, nullptr));
    xcbIgnore(m_connection,
        xcb_put_image_checked(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, context,
            static_cast<quint16>(image.width()), static_cast<quint16>(image.height()), 0, 0, 0,
            m_visual.depth, static_cast<quint32>(image.sizeInBytes()), image.constBits()));
    xcbIgnore(m_connection, xcb_free_gc_checked(m_connection, context));
    xcb_flush(m_connection);
}

std::optional<QRect> TrayWindow::frame() const
{
    if (!m_docked) {
        return {};
    }
    const auto origin = xcbAnswer(xcb_translate_coordinates_reply, m_connection,
        xcb_translate_coordinates(m_connection, m_window, m_screen->root, 0, 0));
    if (!origin) {
        return {};
    }
    return QRect(QPoint(origin->dst_x, origin->dst_y), m_size);
}

} // namespace brevok
