// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractTableModel>
#include <QStringList>

namespace brevok {

class BrevokTargetApps;

/// The rows of the table of targets: whether each is enabled, and its label. Sorted when it is made; later
/// changes move no row. Main thread.
class TargetTableModel final : public QAbstractTableModel {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TargetTableModel)

public:
    enum Column { EnableColumn, LabelColumn, ColumnCount };

    explicit TargetTableModel(BrevokTargetApps &targets, QObject *parent = nullptr);
    ~TargetTableModel() override;

    /// The path of the target in @p row.
    [[nodiscard]] QString path(int row) const { return m_paths.value(row); }
    /// The text of the row, in one line.
    [[nodiscard]] QString getCellLabelForRow(int row) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// A change of a check box is a wish: checkboxClicked() tells it.
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

Q_SIGNALS:
    void checkboxClicked(int row);

private:
    void sortPaths();
    void update();

    BrevokTargetApps &m_targets;
    QStringList m_paths;
};

} // namespace brevok
