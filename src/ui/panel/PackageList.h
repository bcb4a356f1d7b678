// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/panel/PackageRows.h"

#include <QObject>

class QScrollArea;
class QWidget;

namespace brevok {

class BrevokPackageCellController;
class PackageActivity;
class RowIcons;
class UrlOpener;

/// The list of rows in the packages tab. Only the rows in sight and a few beside them have a controller, so
/// that thousands of packages open as fast as ten. Arrow keys, Page Up and Down, Home and End move from row
/// to row. Main thread.
class PackageList final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PackageList)

public:
    struct Collaborators {
        PackageActivity &activity;
        RowIcons &icons;
        UrlOpener &urls;
        QWidget &before; ///< after which the rows come with the Tab key
    };

    /// @p packagesView is the document of @p scrollArea; both outlive this.
    PackageList(QScrollArea &scrollArea, QWidget &packagesView, Collaborators collaborators, QObject *parent);
    ~PackageList() override;

    /// Shows @p rows, whose status is the one to be shown; at the top when their number changed.
    void setRows(const QList<PackageRow> &rows);
    [[nodiscard]] const QList<PackageRow> &rows() const { return m_rows; }
    /// Shows the activity's bytes of a package.
    void updateProgress(const QString &prefix);
    /// Shows the icon of a package anew.
    void updateIcon(const QString &name);
    void updateFonts();

    /// The controller of a row in sight, null for another.
    [[nodiscard]] BrevokPackageCellController *controllerAt(qsizetype row) const;
    /// How many controllers there are, those included that wait to be used again.
    [[nodiscard]] qsizetype controllerCount() const { return m_packageControllers.size() + m_spare.size(); }
    /// Gives the focus to the first row.
    void focusFirst();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] std::pair<qsizetype, qsizetype> wantedRows() const;
    void realise(bool refresh);
    void retire(const QSet<QString> &wanted);
    BrevokPackageCellController *controllerFor(const QString &key);
    void fill(BrevokPackageCellController &controller, qsizetype row);
    void chainTabOrder();
    [[nodiscard]] qsizetype focusedRow() const;
    bool moveFocus(int key);
    void focusChanged(QWidget *now);

    QScrollArea &m_scrollArea;
    QWidget &m_packagesView;
    Collaborators m_with;
    QList<PackageRow> m_rows;
    QStringList m_keys; ///< by row: the prefix, or what else tells rows of one prefix apart
    QHash<QString, qsizetype> m_rowOf; ///< by key
    QHash<QString, BrevokPackageCellController *> m_packageControllers; ///< by key
    QList<BrevokPackageCellController *> m_spare;
};

} // namespace brevok
