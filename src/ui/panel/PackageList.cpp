// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/PackageList.h"

#include "install/LastFailures.h"
#include "ui/panel/BrevokPackageCellController.h"
#include "ui/panel/PackageActivity.h"
#include "ui/panel/PackageCellView.h"
#include "ui/panel/PanelLayout.h"
#include "ui/panel/RowIcons.h"
#include "ui/widgets/SlimScrollBar.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollArea>

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype rowsBeside = 3; // beyond those in sight, for the Tab key and for scrolling
constexpr int rowHeight = PanelGeometry::rowHeight;
constexpr int typedTogetherMilliseconds = 1000;

} // namespace

bool isTyped(const QKeyEvent &event)
{
    const Qt::KeyboardModifiers commands = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    const QString text = event.text();
    return !text.isEmpty() && text.front().isPrint() && !text.front().isSpace()
        && !event.modifiers().testAnyFlags(commands);
}

PackageList::PackageList(
    QScrollArea &scrollArea, QWidget &packagesView, Collaborators collaborators, QObject *parent)
    : QObject(parent)
    , m_scrollArea(scrollArea)
    , m_packagesView(packagesView)
    , m_with(collaborators)
{
    m_scrollArea.setVerticalScrollBar(new SlimScrollBar);
    m_packagesView.installEventFilter(this);
    m_scrollArea.viewport()->installEventFilter(this);
    m_scrollArea.verticalScrollBar()->setSingleStep(rowHeight / 2);
    connect(m_scrollArea.verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { realise(false); });
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, QWidget *now) { focusChanged(now); });
}

PackageList::~PackageList() = default;

void PackageList::setRows(const QList<PackageRow> &rows)
{
    const bool heightChanged = rows.size() != m_rows.size();
    m_rows = rows;
    m_keys.clear();
    m_rowOf.clear();
    for (const PackageRow &row : rows) {
        const QString prefix = row.prefix();
        const bool taken = prefix.isEmpty() || m_rowOf.contains(prefix);
        const QString key = taken ? prefix + u'\n' + row.package.value("Name"_L1).toString() : prefix;
        m_rowOf.insert(key, m_keys.size());
        m_keys.append(key);
    }
    if (heightChanged) {
        m_packagesView.setFixedHeight(static_cast<int>(rows.size()) * rowHeight);
        m_scrollArea.verticalScrollBar()->setValue(0);
    }
    realise(true);
}

QList<qsizetype> PackageList::wantedRows() const
{
    const int top = m_scrollArea.verticalScrollBar()->value();
    const int bottom = top + m_scrollArea.viewport()->height();
    const qsizetype first = std::max<qsizetype>(0, top / rowHeight - rowsBeside);
    const qsizetype end = std::min<qsizetype>(m_rows.size(), bottom / rowHeight + 1 + rowsBeside);
    QList<qsizetype> wanted;
    for (qsizetype row = first; row < end; ++row) {
        wanted.append(row);
    }
    const qsizetype focused = focusedRow(); // so that the keyboard does not lose its place
    if (focused >= 0 && !wanted.contains(focused)) {
        wanted.insert(std::lower_bound(wanted.cbegin(), wanted.cend(), focused), focused);
    }
    return wanted;
}

void PackageList::realise(bool refresh)
{
    const QList<qsizetype> wanted = wantedRows();
    retire(wanted);
    bool changed = false;
    for (const qsizetype row : wanted) {
        const QString key = m_keys.at(row);
        const bool isNew = !m_packageControllers.contains(key);
        BrevokPackageCellController *controller = controllerFor(key);
        if (isNew || refresh) {
            fill(*controller, row);
        }
        controller->view()->setGeometry(
            0, static_cast<int>(row) * rowHeight, m_packagesView.width(), rowHeight);
        controller->view()->show();
        changed = changed || isNew;
    }
    if (changed || refresh) {
        putInOrder(wanted);
    }
}

void PackageList::retire(const QList<qsizetype> &wanted)
{
    for (auto entry = m_packageControllers.begin(); entry != m_packageControllers.end();) {
        if (wanted.contains(m_rowOf.value(entry.key(), -1))) {
            ++entry;
            continue;
        }
        entry.value()->view()->hide();
        m_spare.append(entry.value());
        entry = m_packageControllers.erase(entry);
    }
}

BrevokPackageCellController *PackageList::controllerFor(const QString &key)
{
    BrevokPackageCellController *&controller = m_packageControllers[key];
    if (controller == nullptr) {
        controller = m_spare.isEmpty()
            ? new BrevokPackageCellController(m_with.activity, m_with.urls, &m_packagesView)
            : m_spare.takeLast();
    }
    return controller;
}

void PackageList::fill(BrevokPackageCellController &controller, qsizetype row)
{
    PackageRow shown = m_rows.at(row);
    const InstallOutcome failed = m_with.failures.of(shown.prefix());
    shown.failure = failureNote(failed);
    shown.failureDetails = failed.failureSentences().join(u'\n');
    controller.setRow(shown, m_with.icons.icon(shown.package.value("Name"_L1).toString()));
    controller.setProgress(m_with.activity.progress(shown.prefix()));
}

// Assistive technology takes the order of the views for that of the rows.
void PackageList::putInOrder(const QList<qsizetype> &wanted)
{
    QWidget *last = &m_with.before;
    for (const qsizetype row : wanted) {
        const BrevokPackageCellController *controller = controllerAt(row);
        controller->view()->raise();
        const QList<QWidget *> controls = controller->controls();
        for (QWidget *control : controls) {
            if (control->focusPolicy() != Qt::NoFocus) { // else the chain would break there
                QWidget::setTabOrder(last, control);
                last = control;
            }
        }
    }
}

void PackageList::updateProgress(const QString &prefix)
{
    for (BrevokPackageCellController *controller : std::as_const(m_packageControllers)) {
        if (controller->row().prefix() == prefix) {
            controller->setProgress(m_with.activity.progress(prefix));
        }
    }
}

void PackageList::updateIcon(const QString &name)
{
    for (BrevokPackageCellController *controller : std::as_const(m_packageControllers)) {
        if (controller->package().value("Name"_L1).toString() == name) {
            controller->setRow(controller->row(), m_with.icons.icon(name));
        }
    }
}

void PackageList::updateFonts()
{
    for (BrevokPackageCellController *controller : m_packageControllers.values() + m_spare) {
        controller->updateFonts();
    }
}

BrevokPackageCellController *PackageList::controllerAt(qsizetype row) const
{
    return row >= 0 && row < m_keys.size() ? m_packageControllers.value(m_keys.at(row)) : nullptr;
}

void PackageList::focusFirst()
{
    if (BrevokPackageCellController *first = controllerAt(0)) {
        first->focus();
    }
}

qsizetype PackageList::focusedRow() const
{
    const QWidget *focused = QApplication::focusWidget();
    if (focused == nullptr || !m_packagesView.isAncestorOf(focused)) {
        return -1;
    }
    for (auto entry = m_packageControllers.cbegin(); entry != m_packageControllers.cend(); ++entry) {
        const QWidget *view = entry.value()->view();
        if (view == focused || view->isAncestorOf(focused)) {
            return m_rowOf.value(entry.key(), -1);
        }
    }
    return -1;
}

bool PackageList::keyPressed(const QKeyEvent &event)
{
    const qsizetype from = focusedRow();
    const qsizetype page = std::max(1, m_scrollArea.viewport()->height() / rowHeight - 1);
    if (from < 0) {
        return false;
    }
    switch (event.key()) {
    case Qt::Key_Up:
        moveFocus(from, from - 1);
        return true;
    case Qt::Key_Down:
        moveFocus(from, from + 1);
        return true;
    case Qt::Key_PageUp:
        moveFocus(from, std::max<qsizetype>(0, from - page));
        return true;
    case Qt::Key_PageDown:
        moveFocus(from, from + page);
        return true;
    case Qt::Key_Home:
        moveFocus(from, 0);
        return true;
    case Qt::Key_End:
        moveFocus(from, m_rows.size() - 1);
        return true;
    case Qt::Key_Left:
    case Qt::Key_Right:
        controllerAt(from)->focusSideways(event.key() == Qt::Key_Right ? 1 : -1);
        return true;
    default:
        break;
    }
    const bool types = isTyped(event);
    if (types) {
        typeAhead(event.text());
    }
    return types;
}

void PackageList::moveFocus(qsizetype from, qsizetype to)
{
    if (from == 0 && to < 0 && m_with.before.isVisible()) {
        m_with.before.setFocus(Qt::OtherFocusReason);
        return;
    }
    const qsizetype row = std::clamp<qsizetype>(to, 0, m_rows.size() - 1);
    scrollTo(row, rowHeight);
    if (BrevokPackageCellController *target = row != from ? controllerAt(row) : nullptr) {
        target->focus();
    }
}

void PackageList::scrollTo(qsizetype row, int margin)
{
    m_scrollArea.ensureVisible(0, static_cast<int>(row) * rowHeight + rowHeight / 2, 0, margin);
}

void PackageList::typeAhead(const QString &letters)
{
    if (!m_sinceTyped.isValid() || m_sinceTyped.hasExpired(typedTogetherMilliseconds)) {
        m_typed.clear();
    }
    m_sinceTyped.start();
    m_typed += searchable(letters);
    const qsizetype from = focusedRow();
    // A single letter, pressed again later, goes on from row to row.
    const qsizetype first = m_typed.size() == 1 ? from + 1 : std::max<qsizetype>(0, from);
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        const qsizetype row = (first + i) % m_rows.size();
        if (searchable(m_rows.at(row).name()).startsWith(m_typed)) {
            moveFocus(from, row);
            return;
        }
    }
}

void PackageList::focusChanged(QWidget *now)
{
    if (now == nullptr || !m_packagesView.isAncestorOf(now)) {
        return;
    }
    if (const qsizetype row = focusedRow(); row >= 0) {
        scrollTo(row, rowHeight / 2);
    }
}

bool PackageList::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        realise(false);
    } else if (event->type() == QEvent::KeyPress && watched == &m_packagesView) {
        return keyPressed(*static_cast<QKeyEvent *>(event));
    }
    return QObject::eventFilter(watched, event);
}

} // namespace brevok
