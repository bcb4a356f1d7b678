// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/preferences/TargetRowDelegate.h"

#include "ui/preferences/TargetTableModel.h"
#include "ui/widgets/TextFitting.h"

#include <QFontMetrics>
#include <QStyle>
#include <QTableView>

namespace brevok {

QString fittedLabel(const QString &path, const QString &name, int width, const QFontMetrics &metrics)
{
    const QString end = QStringLiteral(" [") + name + u']';
    const int left = width - metrics.horizontalAdvance(end);
    constexpr int fewest = 8; // characters of a path that still say something
    if (left < fewest * metrics.averageCharWidth()) {
        return metrics.elidedText(end.sliced(1), Qt::ElideRight, width);
    }
    return metrics.elidedText(path, Qt::ElideMiddle, left) + end;
}

TargetRowDelegate::TargetRowDelegate(QObject *parent)
    : QStyledItemDelegate(parent)
{
}

TargetRowDelegate::~TargetRowDelegate() = default;

void TargetRowDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    const auto *const table = qobject_cast<const QTableView *>(option->widget);
    if (table == nullptr || index.column() != TargetTableModel::LabelColumn) {
        option->state.setFlag(QStyle::State_HasFocus, false);
        return;
    }
    option->state.setFlag(
        QStyle::State_HasFocus, table->hasFocus() && index.row() == table->currentIndex().row());
    const int margins = 2 * (table->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, option, table) + 1);
    if (option->rect.width() > margins) {
        option->text = leftToRight(fittedLabel(index.data(TargetTableModel::PathRole).toString(),
            index.data(TargetTableModel::NameRole).toString(), option->rect.width() - margins,
            option->fontMetrics));
    }
}

} // namespace brevok
