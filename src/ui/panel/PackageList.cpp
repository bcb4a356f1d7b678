// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/PackageList.h"

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

} // namespace

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

std::pair<qsizetype, qsizetype> PackageList::wantedRows() const
{
    const int top = m_scrollArea.verticalScrollBar()->value();
    const int bottom = top + m_scrollArea.viewport()->height();
    const qsizetype first = std::max<qsizetype>(0, top / rowHeight - rowsBeside);
    const qsizetype end = std::min<qsizetype>(m_rows.size(), bottom / rowHeight + 1 + rowsBeside);
    return {first, std::max(first, end)};
}

void PackageList::realise(bool refresh)
{
    const auto [first, end] = wantedRows();
    QSet<QString> wanted;
    for (qsizetype row = first; row < std::min(end, m_keys.size()); ++row) {
        wanted.insert(m_keys.at(row));
    }
    if (const qsizetype row = focusedRow(); row >= 0) {
        wanted.insert(m_keys.at(row)); // so that the keyboard does not lose its place
    }
    retire(wanted);
    bool changed = false;
    for (const QString &key : std::as_const(wanted)) {
        const bool isNew = !m_packageControllers.contains(key);
        BrevokPackageCellController *controller = controllerFor(key);
        const qsizetype row = m_rowOf.value(key);
        if (isNew || refresh) {
            fill(*controller, row);
        }
        controller->view()->setGeometry(
            0, static_cast<int>(row) * rowHeight, m_packagesView.width(), rowHeight);
        controller->view()->show();
        changed = changed || isNew;
    }
    if (changed || refresh) {
        chainTabOrder();
    }
}

void PackageList::retire(const QSet<QString> &wanted)
{
    for (auto entry = m_packageControllers.begin(); entry != m_packageControllers.end();) {
        if (wanted.contains(entry.key())) {
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
    const PackageRow &shown = m_rows.at(row);
    controller.setRow(shown, m_with.icons.icon(shown.package.value("Name"_L1).toString()));
    controller.setProgress(m_with.activity.progress(shown.prefix()));
}

void PackageList::chainTabOrder()
{
    QList<qsizetype> order;
    for (auto entry = m_packageControllers.cbegin(); entry != m_packageControllers.cend(); ++entry) {
        order.append(m_rowOf.value(entry.key()));
    }
    std::sort(order.begin(), order.end());
    QWidget *last = &m_with.before;
    for (const qsizetype row : std::as_const(order)) {
        const QList<QWidget *> controls = controllerAt(row)->controls();
        for (QWidget *control : controls) {
            QWidget::setTabOrder(last, control);
            last = control;
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

bool PackageList::moveFocus(int key)
{
    const qsizetype from = focusedRow();
    const qsizetype page = std::max(1, m_scrollArea.viewport()->height() / rowHeight - 1);
    qsizetype to = 0;
    switch (key) {
    case Qt::Key_Up:
        to = from - 1;
        break;
    case Qt::Key_Down:
        to = from + 1;
        break;
    case Qt::Key_PageUp:
        to = from - page;
        break;
    case Qt::Key_PageDown:
        to = from + page;
        break;
    case Qt::Key_Home:
        break;
    case Qt::Key_End:
        to = m_rows.size() - 1;
        break;
    default:
        return false;
    }
    to = std::clamp<qsizetype>(to, 0, m_rows.size() - 1);
    if (from < 0 || to == from) {
        return from >= 0;
    }
    const qsizetype column = controllerAt(from)->controls().indexOf(QApplication::focusWidget());
    m_scrollArea.ensureVisible(0, static_cast<int>(to) * rowHeight + rowHeight / 2, 0, rowHeight);
    if (BrevokPackageCellController *target = controllerAt(to)) {
        target->focusColumn(column);
    }
    return true;
}

void PackageList::focusChanged(QWidget *now)
{
    if (now == nullptr || !m_packagesView.isAncestorOf(now)) {
        return;
    }
    if (const qsizetype row = focusedRow(); row >= 0) {
        m_scrollArea.ensureVisible(0, static_cast<int>(row) * rowHeight + rowHeight / 2, 0, rowHeight / 2);
    }
}

bool PackageList::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize) {
        realise(false);
    } else if (event->type() == QEvent::KeyPress && watched == &m_packagesView) {
        return moveFocus(static_cast<QKeyEvent *>(event)->key());
    }
    return QObject::eventFilter(watched, event);
}

} // namespace brevok
