// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QStringList>

#include <functional>

namespace brevok {

class BrevokTargetApps;

/// The rows of the table of targets: whether each is enabled, and its label. Sorted when it is made; later
/// changes move no row, new targets follow, and a target that comes back has its place again. Main thread.
class TargetTableModel final : public QAbstractTableModel {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TargetTableModel)

public:
    enum Column { EnableColumn, LabelColumn, ColumnCount };
    /// The two parts of a label.
    enum Role { PathRole = Qt::UserRole, NameRole };

    explicit TargetTableModel(BrevokTargetApps &targets, QObject *parent = nullptr);
    ~TargetTableModel() override;

    /// The path of the target in @p row.
    [[nodiscard]] QString path(int row) const { return m_paths.value(row); }
    /// The row of the target with @p path; -1 when it has none.
    [[nodiscard]] int row(const QString &path) const { return static_cast<int>(m_paths.indexOf(path)); }
    /// Runs @p changes of many targets, after which the rows are brought up to date once.
    void changeMany(const std::function<void()> &changes);
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
    void insert(const QString &path);
    [[nodiscard]] QString shownPath(int row) const;
    [[nodiscard]] QString shownName(int row) const;

    BrevokTargetApps &m_targets;
    QStringList m_paths;
    QHash<QString, qsizetype> m_places; ///< of all paths that ever had a row
    bool m_changingMany = false;
};

/// @p label, which begins with a path, as it is shown: a path reads from left to right everywhere.
[[nodiscard]] QString leftToRight(const QString &label);

} // namespace brevok
