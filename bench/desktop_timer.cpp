// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// desktop_timer COMMAND...: is the tray of an X11 bar, starts COMMAND and prints the milliseconds from exec
// until its item is docked, and its process id. For every line on standard input it clicks the item, prints
// the milliseconds until the first frame of the panel is painted, and clicks again. Clicks are further apart
// than those of a double click. Ends COMMAND when standard input does. Fails when no item comes.

#include "support/XembedTray.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <thread>

#include <xcb/xtest.h>

using namespace brevok::testing;

namespace {

constexpr int barHeight = 28;
constexpr qint16 itemMiddle = 12;
constexpr int patienceMs = 20000;
constexpr std::chrono::milliseconds betweenClicks(500);

class Display {
public:
    Display()
        : m_connection(xcb_connect(nullptr, nullptr))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
    {
    }
    ~Display() { xcb_disconnect(m_connection); }
    Q_DISABLE_COPY_MOVE(Display)

    /// The windows in sight.
    [[nodiscard]] QList<xcb_window_t> windows() const
    {
        const auto tree =
            answer(xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, m_root), nullptr));
        QList<xcb_window_t> inSight;
        for (const xcb_window_t window : std::span(xcb_query_tree_children(tree.get()),
                 static_cast<size_t>(xcb_query_tree_children_length(tree.get())))) {
            const auto attributes = answer(xcb_get_window_attributes_reply(
                m_connection, xcb_get_window_attributes(m_connection, window), nullptr));
            if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE) {
                inSight.append(window);
            }
        }
        return inSight;
    }
    /// Whether the middle of @p window shows anything.
    [[nodiscard]] bool painted(xcb_window_t window) const
    {
        const auto geometry =
            answer(xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr));
        if (!geometry) {
            return false;
        }
        const auto image = answer(xcb_get_image_reply(m_connection,
            xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window,
                static_cast<qint16>(geometry->width / 2), static_cast<qint16>(geometry->height / 2), 1, 1,
                ~0U),
            nullptr));
        return image && *reinterpret_cast<const quint32 *>(xcb_get_image_data(image.get())) != 0;
    }
    void click(qint16 x, qint16 y) const
    {
        xcb_test_fake_input(m_connection, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, m_root, x, y, 0);
        xcb_test_fake_input(m_connection, XCB_BUTTON_PRESS, 1, XCB_CURRENT_TIME, m_root, 0, 0, 0);
        xcb_test_fake_input(m_connection, XCB_BUTTON_RELEASE, 1, XCB_CURRENT_TIME, m_root, 0, 0, 0);
        xcb_flush(m_connection);
    }

private:
    template <typename Reply> static std::unique_ptr<Reply, decltype(&free)> answer(Reply *reply)
    {
        return {reply, &free};
    }

    xcb_connection_t *m_connection;
    xcb_window_t m_root;
};

double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QStringList command = QCoreApplication::arguments().mid(1);
    XembedTray tray(Qt::lightGray, barHeight);
    const Display display;
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.setProgram(command.takeFirst());
    process.setArguments(command);
    QElapsedTimer timer;
    timer.start();
    process.start();
    QTimer::singleShot(patienceMs, &application, [] {}); // so that the wait below ends
    while (tray.items() == 0 && timer.elapsed() < patienceMs) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    if (tray.items() == 0) {
        process.terminate();
        process.waitForFinished();
        return EXIT_FAILURE;
    }
    std::printf("%.3f %lld\n", milliseconds(timer), static_cast<long long>(process.processId()));
    std::fflush(stdout);
    while (std::getchar() == '\n') {
        QCoreApplication::processEvents();
        const QList<xcb_window_t> before = display.windows();
        const auto shown = [&] {
            const QList<xcb_window_t> now = display.windows();
            return std::any_of(now.cbegin(), now.cend(),
                [&](xcb_window_t window) { return !before.contains(window) && display.painted(window); });
        };
        std::this_thread::sleep_for(betweenClicks);
        timer.restart();
        display.click(XembedTray::left + itemMiddle, itemMiddle);
        while (!shown() && timer.elapsed() < patienceMs) { }
        std::printf("%.3f\n", milliseconds(timer));
        std::fflush(stdout);
        std::this_thread::sleep_for(betweenClicks);
        display.click(XembedTray::left + itemMiddle, itemMiddle);
        while (display.windows() != before && timer.elapsed() < patienceMs) { }
    }
    process.terminate();
    process.waitForFinished();
    return 0;
}
