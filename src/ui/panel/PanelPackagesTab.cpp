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
#include "ui/widgets/PanelStyle.h"
#include "ui_BrevokPanel.h"

#include <QShortcut>
#include <QToolButton>

namespace brevok {

namespace {

constexpr int networkCheckMilliseconds = 3000;
constexpr qsizetype mostWithoutSearch = 20;

} // namespace

PanelPackagesTab::PanelPackagesTab(Ui::BrevokPanel &ui, Collaborators collaborators, QObject *parent)
    : QObject(parent)
    , m_ui(ui)
    , m_with(collaborators)
    , m_activity({collaborators.flow, collaborators.packages, collaborators.alerts, collaborators.updates})
    , m_icons(collaborators.packages)
    , m_list(*ui.brevokView, *ui.packagesView,
          {m_activity, m_icons, collaborators.flow.lastFailures(), collaborators.urls, *ui.searchField},
          nullptr)
    , m_updateAll(*ui.updateAllButton, collaborators.updates, nullptr)
{
    setAccessibleRole(*m_ui.packagesView, QAccessible::List);
    m_ui.packagesView->setAutoFillBackground(false);
    m_ui.brevokView->viewport()->setAutoFillBackground(false);
    m_ui.searchBox->hide();
    m_ui.nothingFound->hide();
    m_updateTimer.setSingleShot(true);
    m_updateTimer.setInterval(0);
    m_networkTimer.setInterval(networkCheckMilliseconds);
    connect(&m_updateTimer, &QTimer::timeout, this, &PanelPackagesTab::updatePackagesList);
    connect(&m_networkTimer, &QTimer::timeout, this, &PanelPackagesTab::updateNotice);
    connectSources();
    updateFonts();
    sessionChanged();
}

void PanelPackagesTab::connectSources()
{
    BrevokPackages &packages = m_with.packages;
    connect(&packages, &BrevokPackages::packagesChanged, this, &PanelPackagesTab::changed);
    connect(&packages, &BrevokPackages::packagesIconsChanged, this, &PanelPackagesTab::changed);
    connect(&packages, &BrevokPackages::packagesStatusChanged, this, &PanelPackagesTab::changed);
    connect(&packages, &BrevokPackages::updatesChanged, this, &PanelPackagesTab::sessionChanged);
    connect(&m_activity, &PackageActivity::activityChanged, this, &PanelPackagesTab::changed);
    connect(&m_with.flow.lastFailures(), &LastFailures::changed, this, &PanelPackagesTab::changed);
    connect(&m_activity, &PackageActivity::progressChanged, &m_list, &PackageList::updateProgress);
    connect(&m_icons, &RowIcons::iconReady, &m_list, &PackageList::updateIcon);
    connect(&m_with.targets, &BrevokTargetApps::targetsChanged, this, &PanelPackagesTab::changed);
    connect(&m_with.service, &ServiceWatch::changed, this, &PanelPackagesTab::changed);
    connect(m_ui.updatesView, &NoticeView::buttonClicked, this, &PanelPackagesTab::noticeButtonClicked);
    auto *find = new QShortcut(QKeySequence::Find, m_ui.packagesTab);
    connect(find, &QShortcut::activated, this, &PanelPackagesTab::focusSearch);
    connect(m_ui.searchField, &QLineEdit::textChanged, this, &PanelPackagesTab::search);
    connect(&m_updateAll, &PanelUpdateAll::progressChanged, this, &PanelPackagesTab::subtitleChanged);
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
        clearSearch();
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
    m_rows = packageRows(m_with.packages.packageRecords(), m_with.packages.packagesStatus());
    const bool installable = signedIn();
    for (PackageRow &row : m_rows) {
        row.status = m_activity.shownStatus(row.prefix(), row.status);
        row.installable = installable;
    }
    const bool many = m_rows.size() > mostWithoutSearch;
    if (!many) {
        m_ui.searchField->clear();
    }
    m_ui.searchBox->setVisible(many);
    search();
}

void PanelPackagesTab::search()
{
    const QString words = m_ui.searchField->text();
    m_list.setRows(words.isEmpty() ? m_rows : rowsFound(m_rows, words));
    updateNotice();
}

void PanelPackagesTab::focusSearch()
{
    if (m_ui.searchField->isVisible()) {
        m_ui.searchField->setFocus(Qt::ShortcutFocusReason);
    }
}

void PanelPackagesTab::typed(const QString &letters)
{
    if (m_ui.searchField->isVisible()) {
        focusSearch();
        m_ui.searchField->insert(letters);
    } else if (m_ui.brevokView->isVisible()) {
        m_list.typeAhead(letters);
    }
}

bool PanelPackagesTab::clearSearch()
{
    const bool searched = !m_ui.searchField->text().isEmpty();
    m_ui.searchField->clear();
    return searched;
}

QString PanelPackagesTab::subtitle() const
{
    const QString progress = m_updateAll.progressText();
    return !progress.isEmpty()
        ? progress
        : panelSubtitle(m_with.session.orlecId(), signedIn(), m_with.packages.updates());
}

bool PanelPackagesTab::signedIn() const
{
    return !m_with.session.sessionId().isNull();
}

void PanelPackagesTab::sessionChanged()
{
    m_updateAll.setWaiting(signedIn() ? m_with.packages.updates() : 0);
    changed();
}

void PanelPackagesTab::updateNotice()
{
    const bool listed = !m_rows.isEmpty();
    const bool found = !m_list.rows().isEmpty();
    m_notice = noticeKind({.signedIn = signedIn(),
        .networkReachable = m_with.service.networkReachable(),
        .silentSince = m_with.service.silentSince(),
        .checkFailed = !m_with.service.checkFailure().isEmpty(),
        .hasTargets = !m_with.targets.validTargets().isEmpty(),
        .listed = listed,
        .loading = m_with.service.loading()});
    m_ui.brevokView->setVisible(found);
    m_ui.nothingFound->setVisible(listed && !found);
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
    m_ui.searchField->setAccessibleName(Texts::tr("Search Plug-Ins"));
    if (auto *clear = m_ui.searchField->findChild<QToolButton *>()) {
        clear->setAccessibleName(Texts::tr("Clear Search"));
    }
    m_ui.searchField->setPlaceholderText(Texts::tr("Search"));
    m_ui.searchField->setFont(PanelStyle::font(13));
    m_ui.nothingFound->setText(Texts::tr("No Plug-In has such a name."));
    m_ui.nothingFound->setFont(PanelStyle::font(13));
    m_updateAll.updateFonts();
    m_list.updateFonts();
}

} // namespace brevok
