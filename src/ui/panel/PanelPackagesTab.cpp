// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelPackagesTab.h"

#include "catalogue/BrevokPackages.h"
#include "foundation/Texts.h"
#include "install/InstallFlow.h"
#include "service/BrevokSession.h"
#include "targets/BrevokTargetApps.h"
#include "ui/panel/ServiceWatch.h"
#include "ui/widgets/AccessibleRole.h"
#include "ui_BrevokPanel.h"

namespace brevok {

namespace {

constexpr int networkCheckMilliseconds = 3000;

} // namespace

PanelPackagesTab::PanelPackagesTab(Ui::BrevokPanel &ui, Collaborators collaborators, QObject *parent)
    : QObject(parent)
    , m_ui(ui)
    , m_with(collaborators)
    , m_activity(collaborators.flow, collaborators.packages)
    , m_icons(collaborators.packages)
    , m_list(*ui.brevokView, *ui.packagesView, {m_activity, m_icons, collaborators.urls, *ui.updatesView},
          nullptr)
{
    setAccessibleRole(*m_ui.packagesView, QAccessible::List);
    m_ui.packagesView->setAutoFillBackground(false);
    m_ui.brevokView->viewport()->setAutoFillBackground(false);
    m_updateTimer.setSingleShot(true);
    m_updateTimer.setInterval(0);
    m_networkTimer.setInterval(networkCheckMilliseconds);
    connect(&m_updateTimer, &QTimer::timeout, this, &PanelPackagesTab::updatePackagesList);
    connect(&m_networkTimer, &QTimer::timeout, this, &PanelPackagesTab::updateNotice);

    BrevokPackages &packages = collaborators.packages;
    connect(&packages, &BrevokPackages::packagesChanged, this, &PanelPackagesTab::changed);
    connect(&packages, &BrevokPackages::packagesIconsChanged, this, &PanelPackagesTab::changed);
    connect(&packages, &BrevokPackages::packagesStatusChanged, this, &PanelPackagesTab::changed);
    connect(&m_activity, &PackageActivity::activityChanged, this, &PanelPackagesTab::changed);
    connect(&collaborators.flow.lastFailures(), &LastFailures::changed, this, &PanelPackagesTab::changed);
    connect(&m_activity, &PackageActivity::progressChanged, &m_list, &PackageList::updateProgress);
    connect(&m_icons, &RowIcons::iconReady, &m_list, &PackageList::updateIcon);
    connect(&collaborators.targets, &BrevokTargetApps::targetsChanged, this, &PanelPackagesTab::changed);
    connect(&collaborators.service, &ServiceWatch::changed, this, &PanelPackagesTab::changed);
    connect(m_ui.updatesView, &NoticeView::buttonClicked, this, &PanelPackagesTab::noticeButtonClicked);
    updateFonts();
}

PanelPackagesTab::~PanelPackagesTab() = default;

void PanelPackagesTab::changed()
{
    m_dirty = true;
    if (m_onScreen && !m_updateTimer.isActive()) {
        m_updateTimer.start();
    }
}

void PanelPackagesTab::setOnScreen(bool onScreen)
{
    m_onScreen = onScreen;
    if (!onScreen) {
        m_networkTimer.stop();
    } else if (m_dirty) {
        updatePackagesList();
    } else {
        updateNotice();
    }
}

void PanelPackagesTab::updatePackagesList()
{
    m_updateTimer.stop();
    m_dirty = false;
    m_activity.statusesChanged();
    QList<PackageRow> rows = packageRows(m_with.packages.packageRecords(), m_with.packages.packagesStatus());
    for (PackageRow &row : rows) {
        row.status = m_activity.shownStatus(row.prefix(), row.status);
        const InstallOutcome failed = m_with.flow.lastFailures().of(row.prefix());
        row.failure = failureNote(failed);
        row.failureDetails = failed.failureSentences().join(u'\n');
    }
    m_list.setRows(rows);
    updateNotice();
}

void PanelPackagesTab::updateNotice()
{
    const bool listed = !m_list.rows().isEmpty();
    m_notice = noticeKind({.signedIn = !m_with.session.sessionId().isNull(),
        .networkReachable = m_with.service.networkReachable(),
        .silentSince = m_with.service.silentSince(),
        .checkFailed = !m_with.service.checkFailure().isEmpty(),
        .hasTargets = !m_with.targets.validTargets().isEmpty(),
        .listed = listed,
        .loading = m_with.service.loading()});
    m_ui.brevokView->setVisible(listed);
    m_ui.updatesView->setNotice(
        noticeText(m_notice, m_with.service.silentSince(), QDateTime::currentDateTime()), !listed);
    // Nobody announces that the network is back.
    if (m_onScreen && m_notice == NoticeKind::Offline) {
        m_networkTimer.start();
    } else {
        m_networkTimer.stop();
    }
}

void PanelPackagesTab::noticeButtonClicked()
{
    switch (m_notice) {
    case NoticeKind::SignedOut:
        Q_EMIT signInWanted();
        break;
    case NoticeKind::NoTargets:
        Q_EMIT targetsWanted();
        break;
    case NoticeKind::Offline:
    case NoticeKind::ServiceSilent:
    case NoticeKind::EmptyCatalogue:
        m_with.service.tryAgain();
        updateNotice();
        break;
    case NoticeKind::None:
    case NoticeKind::Loading:
        break;
    }
}

void PanelPackagesTab::reloadIcons()
{
    m_icons.forget();
    changed();
}

void PanelPackagesTab::updateFonts()
{
    m_ui.packagesView->setAccessibleName(Texts::tr("Plug-Ins"));
    m_list.updateFonts();
}

} // namespace brevok
