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

namespace brevok {

namespace {

// A path reads from left to right everywhere.
QString shownLabel(const QString &label)
{
    constexpr QChar isolate(0x2066);
    constexpr QChar endOfIsolate(0x2069);
    return QGuiApplication::isRightToLeft() ? isolate + label + endOfIsolate : label;
}

} // namespace

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
}

void TargetTableModel::update()
{
    const QStringList paths = rowsAfterChange(m_paths, m_targets.targets().keys());
    for (int row = static_cast<int>(m_paths.size()) - 1; row >= 0; --row) {
        if (!paths.contains(m_paths.at(row))) {
            beginRemoveRows({}, row, row);
            m_paths.removeAt(row);
            endRemoveRows();
        }
    }
    if (paths.size() > m_paths.size()) {
        beginInsertRows({}, static_cast<int>(m_paths.size()), static_cast<int>(paths.size()) - 1);
        m_paths = paths;
        endInsertRows();
    }
    if (!m_paths.isEmpty()) {
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    }
}

QString TargetTableModel::getCellLabelForRow(int row) const
{
    return oneLine(targetCellLabel(path(row), m_targets.targets().value(path(row))));
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
        return role == Qt::DisplayRole ? shownLabel(getCellLabelForRow(row)) : QVariant();
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
