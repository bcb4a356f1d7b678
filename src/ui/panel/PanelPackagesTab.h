// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/panel/PackageActivity.h"
#include "ui/panel/PackageList.h"
#include "ui/panel/PanelState.h"
#include "ui/panel/PanelUpdateAll.h"
#include "ui/panel/RowIcons.h"

#include <QTimer>

namespace Ui {
class BrevokPanel;
}

namespace brevok {

class BrevokAlertQueue;
class BrevokPackages;
class BrevokSession;
class BrevokTargetApps;
class InstallFlow;
class ServiceWatch;
class UpdateRun;
class UrlOpener;

/// Runs the packages tab: the list of rows, the search in a long one, the update of all that waits, and the
/// notice that says what keeps the list from being of use. Changes of the catalogue are shown once per turn
/// of the loop, and only while the tab is on the screen. Main thread.
class PanelPackagesTab final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PanelPackagesTab)

public:
    struct Collaborators {
        BrevokSession &session;
        BrevokPackages &packages;
        BrevokTargetApps &targets;
        InstallFlow &flow;
        UpdateRun &updates;
        BrevokAlertQueue &alerts;
        UrlOpener &urls;
        ServiceWatch &service;
    };

    PanelPackagesTab(Ui::BrevokPanel &ui, Collaborators collaborators, QObject *parent);
    ~PanelPackagesTab() override;

    /// Whether the panel is on the screen. What changed meanwhile is shown before it is.
    void setOnScreen(bool onScreen);
    void updatePackagesList();
    void updateNotice();
    /// Reads the icons afresh.
    void reloadIcons();
    void updateFonts();
    void focusFirst() { m_list.focusFirst(); }
    /// Letters came while no control had the focus.
    void typed(const QString &letters);
    /// Ends a search. Whether there was one.
    bool clearSearch();
    /// Somebody signed in or out.
    void sessionChanged();

    [[nodiscard]] PackageList &list() { return m_list; }
    [[nodiscard]] NoticeKind notice() const { return m_notice; }
    /// The line below the program's name: who is signed in and what waits, or how far the update of all is.
    [[nodiscard]] QString subtitle() const;

Q_SIGNALS:
    void signInWanted();
    void targetsWanted();
    /// The update of all went on: another subtitle().
    void subtitleChanged();

private:
    void connectSources();
    void changed();
    void search();
    void focusSearch();
    [[nodiscard]] bool signedIn() const;
    void noticeButtonClicked();

    Ui::BrevokPanel &m_ui;
    Collaborators m_with;
    PackageActivity m_activity;
    RowIcons m_icons;
    PackageList m_list;
    PanelUpdateAll m_updateAll;
    QList<PackageRow> m_rows; ///< those included that a search does not find
    NoticeKind m_notice = NoticeKind::None;
    QTimer m_updateTimer;
    QTimer m_networkTimer;
    bool m_onScreen = false;
    bool m_dirty = true;
};

} // namespace brevok
