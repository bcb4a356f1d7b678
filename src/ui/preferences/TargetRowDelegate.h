// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStyledItemDelegate>

class QFontMetrics;

namespace brevok {

/// @p path with @p name behind it in square brackets, no wider than @p width: the path gives way first, in
/// its middle.
[[nodiscard]] QString fittedLabel(
    const QString &path, const QString &name, int width, const QFontMetrics &metrics);

/// Draws the rows of targets. The focus is a row's: it is seen around the text, not around nothing beside the
/// check box.
class TargetRowDelegate final : public QStyledItemDelegate {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TargetRowDelegate)

public:
    explicit TargetRowDelegate(QObject *parent = nullptr);
    ~TargetRowDelegate() override;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;
};

} // namespace brevok
