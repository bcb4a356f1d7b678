// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/BrevokPanel.h"

#include "ui/desktop/WindowBlending.h"
#include "ui/panel/PackageList.h"
#include "ui/widgets/AccessibleRole.h"
#include "ui_BrevokPanel.h"

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QTimer>

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto focusReturns = 1000ms; // after what lay above it
constexpr auto focusSettles = 200ms; // longer than Qt waits before it tells that the focus is lost

// Elsewhere a window cannot choose its opacity, shape or level, and says so in the log at every try.
bool windowsObey()
{
    const QString platform = QGuiApplication::platformName();
    return platform == "xcb"_L1 || platform == "cocoa"_L1;
}

int between(int from, int to, double progress)
{
    return from + qRound((to - from) * progress);
}

QRect between(const QRect &from, const QRect &to, double progress)
{
    return {between(from.x(), to.x(), progress), between(from.y(), to.y(), progress),
        std::max(1, between(from.width(), to.width(), progress)),
        std::max(1, between(from.height(), to.height(), progress))};
}

} // namespace

BrevokPanel::BrevokPanel()
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint)
    , m_ui(std::make_unique<Ui::BrevokPanel>())
    , m_orderOutTimer(new QTimer(this))
    , m_focusTimer(new QTimer(this))
    , m_returnTimer(new QTimer(this))
{
    setAccessibleRole(*this, QAccessible::Dialog);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    setMouseTracking(true);
    m_ui->setupUi(this);
    m_animation.setStartValue(0.0);
    m_animation.setEndValue(1.0);
    connect(&m_animation, &QVariantAnimation::valueChanged, this,
        [this](const QVariant &value) { applyFrame(value.toDouble()); });
    m_orderOutTimer->setSingleShot(true);
    m_orderOutTimer->setInterval(PanelGeometry::orderOutMilliseconds);
    connect(m_orderOutTimer, &QTimer::timeout, this, &BrevokPanel::orderOut);
    m_focusTimer->setSingleShot(true);
    m_focusTimer->setInterval(focusSettles);
    connect(m_focusTimer, &QTimer::timeout, this, &BrevokPanel::noticeFocus);
    m_returnTimer->setSingleShot(true);
    m_returnTimer->setInterval(focusReturns);
    connect(m_returnTimer, &QTimer::timeout, this, [this] {
        if (!isActiveWindow()) {
            Q_EMIT didResignKey();
        }
    });
}

BrevokPanel::~BrevokPanel() = default;

void BrevokPanel::orderFront(const PanelPlace &place, int milliseconds)
{
    m_orderOutTimer->stop();
    m_place = place;
    m_ui->backgroundView->setUpward(place.upward);
    m_ui->backgroundView->setTranslucent(windowsAreBlended());
    m_opening = true;
    setOpacity(0);
    setGeometry(place.item);
    show();
    if (windowsObey()) {
        raise();
    }
    activateWindow();
    m_focusTimer->start();
    animate(milliseconds, 1);
}

void BrevokPanel::setPlace(const PanelPlace &place)
{
    m_place = place;
    m_ui->backgroundView->setUpward(place.upward);
    if (m_animation.state() != QAbstractAnimation::Running) {
        setGeometry(place.panel);
        windowDidResize(); // the item may be another where the panel is not
    }
}

void BrevokPanel::fadeOut()
{
    m_opening = false;
    animate(PanelGeometry::closeMilliseconds, 0);
    m_orderOutTimer->start();
}

bool BrevokPanel::isFading() const
{
    return m_orderOutTimer->isActive();
}

void BrevokPanel::orderOut()
{
    m_animation.stop();
    hide();
    Q_EMIT orderedOut();
}

// Where the panel opens again before Qt has told that its window lost the focus, the focus that comes back
// makes no difference to Qt: the window has it, and no widget knows.
void BrevokPanel::noticeFocus()
{
    if (m_opening && isVisible() && QGuiApplication::focusWindow() == windowHandle() && !isActiveWindow()) {
        // activateWindow(), which later versions of Qt name instead, asks for the focus that the window
        // already has.
        QT_WARNING_PUSH
        QT_WARNING_DISABLE_DEPRECATED
        QApplication::setActiveWindow(this);
        QT_WARNING_POP
    }
}

// Window managers pass the focus of a window that goes to others before the one that asked for it keeps it.
void BrevokPanel::awaitFocus()
{
    m_returnTimer->start();
}

bool BrevokPanel::hasSheets() const
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.cbegin(), windows.cend(), [this](const QWidget *window) {
        return window->isVisible() && window->windowModality() == Qt::WindowModal
            && window->parentWidget() != nullptr && window->parentWidget()->window() == this;
    });
}

void BrevokPanel::animate(int milliseconds, double toOpacity)
{
    m_animation.stop();
    m_startOpacity = m_opacity;
    m_endOpacity = toOpacity;
    m_animation.setDuration(milliseconds);
    m_animation.start();
}

void BrevokPanel::applyFrame(double progress)
{
    if (m_opening) {
        setGeometry(between(m_place.item, m_place.panel, progress));
    }
    setOpacity(m_startOpacity + (m_endOpacity - m_startOpacity) * progress);
}

void BrevokPanel::setOpacity(double opacity)
{
    m_opacity = opacity;
    if (windowsObey()) {
        setWindowOpacity(opacity);
    }
}

void BrevokPanel::windowDidResize()
{
    BrevokBackgroundView *background = m_ui->backgroundView;
    background->setGeometry(rect());
    background->setArrowX(arrowXFor(m_place.item, geometry()));
    // The content keeps its final size, so that growing lays nothing out again.
    const int bodyHeight = m_place.panel.height() - PanelGeometry::arrowHeight;
    const int y = m_place.upward ? height() - m_place.panel.height() : PanelGeometry::arrowHeight;
    m_ui->contentView->setGeometry((width() - PanelGeometry::width) / 2, y, PanelGeometry::width, bodyHeight);
    if (windowsObey()) {
        setMask(background->shape()); // also for shadows and clicks
    }
}

void BrevokPanel::resizeEvent(QResizeEvent *)
{
    windowDidResize();
}

void BrevokPanel::moveEvent(QMoveEvent *)
{
    windowDidResize();
}

bool BrevokPanel::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::WindowDeactivate:
        if (!m_returnTimer->isActive()) {
            Q_EMIT didResignKey();
        }
        break;
    case QEvent::WindowUnblocked: // what lay above it has gone
        if (m_opening && isVisible()) {
            awaitFocus();
        }
        break;
    case QEvent::ApplicationFontChange:
    case QEvent::ApplicationPaletteChange:
    case QEvent::LanguageChange:
        Q_EMIT styleChanged();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void BrevokPanel::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel)) {
        Q_EMIT cancelOperation();
    } else if (event->key() == Qt::Key_Down) {
        Q_EMIT moveDown();
    } else if (isTyped(*event)) {
        Q_EMIT typed(event->text());
    } else {
        QWidget::keyPressEvent(event);
    }
}

void BrevokPanel::closeEvent(QCloseEvent *event)
{
    event->ignore(); // the panel is only taken off the screen
    Q_EMIT willClose();
}

} // namespace brevok
