// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/panel/PackageActivity.h"
#include "ui/panel/PackageList.h"
#include "ui/panel/PanelState.h"
#include "ui/panel/RowIcons.h"

#include <QTimer>

namespace Ui {
class BrevokPanel;
}

namespace brevok {

class BrevokPackages;
class BrevokSession;
class BrevokTargetApps;
class InstallFlow;
class ServiceWatch;
class UrlOpener;

/// Runs the packages tab: the list of rows, and the notice that says what keeps it from being of use. Changes
/// of the catalogue are shown once per turn of the loop, and only while the tab is on the screen. Main
/// thread.
class PanelPackagesTab final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PanelPackagesTab)

public:
    struct Collaborators {
        BrevokSession &session;
        BrevokPackages &packages;
        BrevokTargetApps &targets;
        InstallFlow &flow;
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

    [[nodiscard]] PackageList &list() { return m_list; }
    [[nodiscard]] NoticeKind notice() const { return m_notice; }

Q_SIGNALS:
    void signInWanted();
    void targetsWanted();

private:
    void changed();
    void noticeButtonClicked();

    Ui::BrevokPanel &m_ui;
    Collaborators m_with;
    PackageActivity m_activity;
    RowIcons m_icons;
    PackageList m_list;
    NoticeKind m_notice = NoticeKind::None;
    QTimer m_updateTimer;
    QTimer m_networkTimer;
    bool m_onScreen = false;
    bool m_dirty = true;
};

} // namespace brevok
