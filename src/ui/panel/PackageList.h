// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/panel/PackageRows.h"

#include <QElapsedTimer>
#include <QObject>

class QKeyEvent;
class QScrollArea;
class QWidget;

namespace brevok {

class BrevokPackageCellController;
class LastFailures;
class PackageActivity;
class RowIcons;
class UrlOpener;

/// Whether @p event is letters typed, and no command.
[[nodiscard]] bool isTyped(const QKeyEvent &event);

/// The list of rows in the packages tab. Only the rows in sight and a few beside them have a controller, so
/// that thousands of packages open as fast as ten. Up and Down, Page Up and Down, Home and End move from row
/// to row, Left and Right within a row, and letters to the next row whose name begins with them. Main thread.
class PackageList final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PackageList)

public:
    struct Collaborators {
        PackageActivity &activity;
        RowIcons &icons;
        const LastFailures &failures;
        UrlOpener &urls;
        QWidget &before; ///< what the rows follow with the Tab key, and Up goes back to
    };

    /// @p packagesView is the document of @p scrollArea; both outlive this.
    PackageList(QScrollArea &scrollArea, QWidget &packagesView, Collaborators collaborators, QObject *parent);
    ~PackageList() override;

    /// Shows @p rows, whose status is the one to be shown, with what failed; at the top when their number
    /// changed.
    void setRows(const QList<PackageRow> &rows);
    [[nodiscard]] const QList<PackageRow> &rows() const { return m_rows; }
    /// Shows the activity's bytes of a package.
    void updateProgress(const QString &prefix);
    /// Shows the icon of a package anew.
    void updateIcon(const QString &name);
    void updateFonts();

    /// The controller of a row in sight, null for another.
    [[nodiscard]] BrevokPackageCellController *controllerAt(qsizetype row) const;
    /// Gives the focus to the first row.
    void focusFirst();
    /// Moves to a row whose name begins with what was typed lately, @p letters included.
    void typeAhead(const QString &letters);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] QList<qsizetype> wantedRows() const;
    void realise(bool refresh);
    void retire(const QList<qsizetype> &wanted);
    BrevokPackageCellController *controllerFor(const QString &key);
    void fill(BrevokPackageCellController &controller, qsizetype row);
    void putInOrder(const QList<qsizetype> &wanted);
    [[nodiscard]] qsizetype focusedRow() const;
    bool keyPressed(const QKeyEvent &event);
    void moveFocus(qsizetype from, qsizetype to);
    void scrollTo(qsizetype row, int margin);
    void focusChanged(QWidget *now);

    QScrollArea &m_scrollArea;
    QWidget &m_packagesView;
    Collaborators m_with;
    QList<PackageRow> m_rows;
    QStringList m_keys; ///< by row: the prefix, or what else tells rows of one prefix apart
    QHash<QString, qsizetype> m_rowOf; ///< by key
    QHash<QString, BrevokPackageCellController *> m_packageControllers; ///< by key
    QList<BrevokPackageCellController *> m_spare;
    QString m_typed;
    QElapsedTimer m_sinceTyped;
};

} // namespace brevok
