// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/statusitem/StatusBar.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QPoint>
#include <QRect>

#include <array>
#include <optional>

struct xcb_connection_t;
struct xcb_screen_t;

namespace brevok {

/// The item as a window inside the tray of an X11 bar (the system tray protocol over XEmbed). It docks when a
/// tray is there or comes, and again when that comes back. All measures are the screen's own pixels.
///
/// Of plain X calls: Qt's own tray icon asks for a square only and does not dock any more once it saw a
/// StatusNotifierItem watcher.
class TrayWindow final : public QObject, public QAbstractNativeEventFilter {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TrayWindow)

public:
    /// For screen number @p screen of @p connection, which is the application's own.
    TrayWindow(xcb_connection_t *connection, int screen);
    ~TrayWindow() override;

    /// Whether the item is to be in the tray.
    void setWanted(bool wanted);
    /// What the tray gave, empty before it did.
    [[nodiscard]] QSize granted() const { return m_docked ? m_size : QSize(); }
    /// Asks the tray for at least this room.
    void setWish(const QSize &pixels);
    void setFace(const StatusItemFace &face, double lengthInPixels);

    /// On the screen; nothing while not docked.
    [[nodiscard]] std::optional<QRect> frame() const;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

Q_SIGNALS:
    /// Docked, undocked, or in a new size.
    void changed();
    void clicked(QPoint where);
    void hovered(QPoint where);
    void left();

private:
    using Window = quint32;
    struct Visual {
        quint32 id = 0;
        quint8 depth = 0;
        bool alpha = false;
    };
    enum Atom {
        TraySelection,
        Manager,
        TrayOpcode,
        TrayVisual,
        TrayColours,
        XembedInfo,
        Xembed,
        NetWmName,
        Utf8String,
        AtomCount,
    };

    void internAtoms(int screen);
    /// Looks for a tray and docks there.
    void locateTray();
    void dock();
    void createWindow(const Visual &visual);
    void undock();
    [[nodiscard]] Visual trayVisual() const;
    [[nodiscard]] std::optional<QColor> trayTextColour() const;
    /// What lies behind the window, for trays without transparency.
    [[nodiscard]] QImage background() const;
    void paint();
    [[nodiscard]] QImage drawn(const std::optional<QColor> &barText);
    void put(const QImage &image);
    void sizeHints() const;
    void handleWindowEvent(const void *event);
    void setDocked(bool docked);

    xcb_connection_t *m_connection;
    xcb_screen_t *m_screen;
    std::array<quint32, AtomCount> m_atoms{};
    Window m_tray = 0;
    Window m_window = 0;
    quint32 m_colourMap = 0;
    Visual m_visual;
    QSize m_size;
    QSize m_wish{24, 24};
    StatusItemFace m_face;
    double m_length = 0;
    bool m_wide = false;
    bool m_wanted = false;
    bool m_docked = false;
};

} // namespace brevok
