// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/preferences/TargetTableModel.h"

#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"
#include "targets/BrevokTargetApps.h"
#include "targets/MarketingNames.h"
#include "ui/preferences/TargetOrder.h"
#include "ui/widgets/TextFitting.h"

#include <QGuiApplication>
#include <QSet>

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

QString leftToRight(const QString &label)
{
    constexpr QChar isolate(0x2066);
    constexpr QChar endOfIsolate(0x2069);
    return QGuiApplication::isRightToLeft() ? isolate + label + endOfIsolate : label;
}

TargetTableModel::TargetTableModel(BrevokTargetApps &targets, QObject *parent)
    : QAbstractTableModel(parent)
    , m_targets(targets)
{
    sortPaths();
    connect(&targets, &BrevokTargetApps::targetsChanged, this, &TargetTableModel::update);
}

TargetTableModel::~TargetTableModel() = default;

void TargetTableModel::sortPaths()
{
    QList<OrderedTarget> unsorted;
    const TargetRecords records = m_targets.targets();
    for (auto record = records.cbegin(); record != records.cend(); ++record) {
        unsorted.append({record.key(), m_targets.resolvedPath(record.key()),
            record->value(TargetKeys::version).toString()});
    }
    m_paths = sortedTargetPaths(unsorted);
    for (const QString &path : std::as_const(m_paths)) {
        m_places.insert(path, m_places.size());
    }
}

void TargetTableModel::changeMany(const std::function<void()> &changes)
{
    m_changingMany = true;
    changes();
    m_changingMany = false;
    update();
}

void TargetTableModel::update()
{
    if (m_changingMany) {
        return;
    }
    const TargetRecords records = m_targets.targets();
    for (int row = rowCount() - 1; row >= 0; --row) {
        if (!records.contains(m_paths.at(row))) {
            beginRemoveRows({}, row, row);
            m_paths.removeAt(row);
            endRemoveRows();
        }
    }
    if (records.size() > m_paths.size()) {
        const QSet<QString> present(m_paths.cbegin(), m_paths.cend());
        for (auto record = records.cbegin(); record != records.cend(); ++record) {
            if (!present.contains(record.key())) {
                insert(record.key());
            }
        }
    }
    if (!m_paths.isEmpty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    }
}

void TargetTableModel::insert(const QString &path)
{
    if (!m_places.contains(path)) {
        m_places.insert(path, m_places.size());
    }
    const auto next = std::lower_bound(m_paths.cbegin(), m_paths.cend(), m_places.value(path),
        [this](const QString &other, qsizetype place) { return m_places.value(other) < place; });
    const auto row = static_cast<int>(next - m_paths.cbegin());
    beginInsertRows({}, row, row);
    m_paths.insert(row, path);
    endInsertRows();
}

// Shortened in the middle, where a path says least.
QString TargetTableModel::shownPath(int row) const
{
    constexpr qsizetype most = 1000;
    const QString whole = path(row);
    const QString shown =
        whole.size() > most ? whole.first(most / 2) + u'…' + whole.last(most / 2 - 1) : whole;
    return oneLine(shown);
}

QString TargetTableModel::shownName(int row) const
{
    return oneLine(targetLabel(m_targets.allRecords().value(path(row))));
}

QString TargetTableModel::getCellLabelForRow(int row) const
{
    constexpr qsizetype most = 2000; // a path and a name
    return oneLine(targetCellLabel(shownPath(row), m_targets.allRecords().value(path(row))), most);
}

int TargetTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_paths.size());
}

int TargetTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant TargetTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const int row = index.row();
    if (role == Qt::ToolTipRole) {
        return plainToolTip(getCellLabelForRow(row));
    }
    if (index.column() == LabelColumn) {
        switch (role) {
        case Qt::DisplayRole:
            return leftToRight(getCellLabelForRow(row));
        case PathRole:
            return shownPath(row);
        case NameRole:
            return shownName(row);
        default:
            return {};
        }
    }
    if (role == Qt::CheckStateRole) {
        return m_targets.targetState(path(row)) ? Qt::Checked : Qt::Unchecked;
    }
    return role == Qt::AccessibleTextRole ? Texts::tr("Enable %1").arg(getCellLabelForRow(row)) : QVariant();
}

QVariant TargetTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal) {
        return {};
    }
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(Qt::AlignLeading | Qt::AlignVCenter);
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    return section == EnableColumn ? Texts::tr("Enabled") : Texts::tr("Plug-Ins folder");
}

Qt::ItemFlags TargetTableModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return index.column() == EnableColumn ? usual | Qt::ItemIsUserCheckable : usual;
}

bool TargetTableModel::setData(const QModelIndex &index, const QVariant & /*value*/, int role)
{
    if (role != Qt::CheckStateRole || index.column() != EnableColumn) {
        return false;
    }
    Q_EMIT checkboxClicked(index.row());
    return true;
}

} // namespace brevok
