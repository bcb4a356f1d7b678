// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/preferences/BrevokPreferencesController.h"

#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"
#include "platform/SettingsStore.h"
#include "platform/TimerRuns.h"
#include "platform/UrlOpener.h"
#include "service/BrevokSession.h"
#include "surfaces/SettingsAccess.h"
#include "ui/panel/PanelState.h"
#include "ui/preferences/PageTabs.h"
#include "ui/preferences/TargetsPage.h"
#include "ui/widgets/AccessibleRole.h"
#include "ui/widgets/TemplateImage.h"
#include "ui/widgets/TextFitting.h"
#include "ui_BrevokPreferences.h"

#include <QActionGroup>
#include <QKeyEvent>
#include <QLocale>
#include <QStyle>
#include <QToolButton>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

BrevokPreferencesController *sharedController = nullptr;

} // namespace

BrevokPreferencesController::BrevokPreferencesController(Collaborators collaborators, QWidget *parent)
    : QMainWindow(parent)
    , m_with(std::move(collaborators))
    , m_outlets(std::make_unique<Ui::BrevokPreferences>())
{
    if (sharedController == nullptr) {
        sharedController = this;
    }
    m_outlets->setupUi(this);
    announceAsTabs(*m_outlets->toolbar); // before anything is told of them
    m_outlets->toolbar->lower(); // so that screen readers come to it before the pages
    m_targetsPage = new TargetsPage(m_with.targets, m_with.presenter, this);
    m_outlets->tabView->insertWidget(static_cast<int>(Page::Targets), m_targetsPage);
    setTexts();
    setUpToolbar();
    setUpAccount();
    setUpSettings();
    observe();
    updateAccountPage();
    updateSettingsPage();
    switchTab(Page::Account);
    if (m_outlets->credentials->isHidden()) {
        m_outlets->actionButton->setFocus();
    } else {
        (m_outlets->orlecId->text().isEmpty() ? m_outlets->orlecId : m_outlets->password)->setFocus();
    }
}

BrevokPreferencesController::~BrevokPreferencesController()
{
    if (sharedController == this) {
        sharedController = nullptr;
    }
}

BrevokPreferencesController *BrevokPreferencesController::preferencesController()
{
    return sharedController;
}

void BrevokPreferencesController::setTexts()
{
    Ui::BrevokPreferences &ui = *m_outlets;
    setWindowTitle(Texts::tr("Preferences"));
    ui.toolbar->setWindowTitle(Texts::tr("Pages"));
    ui.toolbar->setAccessibleName(ui.toolbar->windowTitle());
    ui.accountItem->setText(Texts::tr("Account"));
    ui.targetsItem->setText(Texts::tr("Targets"));
    ui.settingsItem->setText(Texts::tr("Settings"));

    ui.accountHint->setText(
        Texts::tr("Sign in to install Plug-Ins with this account and to keep them up to date."));
    ui.orlecIdLabel->setText(Texts::tr("&Email:"));
    ui.passwordLabel->setText(Texts::tr("&Password:"));
    ui.createAccountLink->setText(Texts::tr("Create Account…"));
}

void BrevokPreferencesController::setUpToolbar()
{
    struct Item {
        QAction *action;
        const char *image;
        Page page;
    };
    const QList<Item> items{{m_outlets->accountItem, "Account", Page::Account},
        {m_outlets->targetsItem, "Targets", Page::Targets},
        {m_outlets->settingsItem, "Settings", Page::Settings}};
    constexpr int iconSize = 24;
    m_outlets->toolbar->setIconSize({iconSize, iconSize});
    auto *group = new QActionGroup(this);
    int number = 0;
    for (const Item &item : items) {
        group->addAction(item.action);
        item.action->setIcon(templateIcon(QString::fromLatin1(item.image)));
        item.action->setShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + number++)));
        connect(item.action, &QAction::triggered, this, [this, page = item.page] { switchTab(page); });
        if (auto *button = qobject_cast<QToolButton *>(m_outlets->toolbar->widgetForAction(item.action))) {
            constexpr int buttonWidth = 84;
            button->setFocusPolicy(Qt::TabFocus);
            button->setMinimumWidth(buttonWidth);
        }
        QWidget *page = m_outlets->tabView->widget(static_cast<int>(item.page));
        setAccessibleRole(*page, QAccessible::PropertyPage);
        page->setAccessibleName(item.action->text());
    }
}

void BrevokPreferencesController::setUpAccount()
{
    Ui::BrevokPreferences &ui = *m_outlets;
    ui.orlecId->setInputMethodHints(Qt::ImhEmailCharactersOnly | Qt::ImhNoAutoUppercase);
    connect(ui.orlecId, &QLineEdit::returnPressed, this, [this] { returnOnCredentials(true); });
    connect(ui.password, &QLineEdit::returnPressed, this, [this] { returnOnCredentials(false); });
    connect(ui.actionButton, &QPushButton::clicked, this, &BrevokPreferencesController::signInOrOut);
    connect(ui.createAccountLink, &QPushButton::clicked, this, &BrevokPreferencesController::createAccount);
}

void BrevokPreferencesController::setUpSettings()
{
    const Ui::BrevokPreferences &ui = *m_outlets;
    m_settingBoxes = {{SettingKeys::startAtLogin, ui.startAtLogin},
        {SettingKeys::showNotifications, ui.notifications},
        {SettingKeys::automaticChecks, ui.checkForUpdates}, {SettingKeys::autoUpdate, ui.autoUpdate},
        {SettingKeys::logLevel, ui.logLevel}};
    for (QLabel *note : {ui.notificationsNote, ui.autoUpdateNote}) {
        note->setContentsMargins(style()->pixelMetric(QStyle::PM_IndicatorWidth)
                + style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing),
            0, 0, 0);
    }
    showSchedule({});
    SettingsAccess &access = m_with.access;
    for (const Setting &setting : allSettings()) {
        QCheckBox *box = m_settingBoxes.value(setting.key);
        box->setText(Texts::tr(setting.text));
        connect(box, &QCheckBox::clicked, this, [this, &setting](bool on) {
            const auto tell = [this](const std::optional<BrevokError> &error) {
                m_notKept = error && m_with.settings.problem().isEmpty() ? error->description : QString();
                updateSettingsPage();
            };
            m_with.access.setSetting(setting, setting.valueFrom(on ? 1 : 0), {this, tell});
        });
        if (access.isLocked(setting)) {
            box->setEnabled(false);
            box->setToolTip(Texts::tr("This setting is managed by your administrator."));
            box->setAccessibleDescription(box->toolTip());
        }
    }
}

void BrevokPreferencesController::observe()
{
    connect(&m_with.session, &BrevokSession::statusChanged, this,
        &BrevokPreferencesController::updateAccountPage);
    connect(&m_with.session, &BrevokSession::actionFinished, this,
        &BrevokPreferencesController::updateAccountPage);
    // Later: who sets a value may do more before it reads as new, as for the login items.
    connect(
        &m_with.settings, &SettingsStore::changed, this,
        [this](const QString &key) {
            if (m_settingBoxes.contains(key)) {
                updateSettingsPage();
            }
        },
        Qt::QueuedConnection);
    connect(
        &m_with.settings, &SettingsStore::troubled, this, &BrevokPreferencesController::updateSettingsPage);
    connect(&m_with.settings, &SettingsStore::mended, this, &BrevokPreferencesController::updateSettingsPage);
}

void BrevokPreferencesController::showWindow()
{
    show();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

void BrevokPreferencesController::showTargets()
{
    switchTab(Page::Targets);
    showWindow();
}

void BrevokPreferencesController::switchTab(Page page)
{
    QAction *item = page == Page::Account ? m_outlets->accountItem
        : page == Page::Targets           ? m_outlets->targetsItem
                                          : m_outlets->settingsItem;
    item->setChecked(true);
    m_outlets->tabView->setCurrentIndex(static_cast<int>(page));
}

void BrevokPreferencesController::signInOrOut()
{
    if (m_with.session.isUpdating()) {
        return;
    }
    if (m_with.session.sessionId().isEmpty()) {
        m_with.session.signinWithID(m_outlets->orlecId->text(), m_outlets->password->text());
    } else {
        m_with.session.signout();
    }
}

void BrevokPreferencesController::returnOnCredentials(bool inEmailField)
{
    switch (
        brevok::returnOnCredentials(inEmailField, m_outlets->orlecId->text(), m_outlets->password->text())) {
    case CredentialStep::None:
        break;
    case CredentialStep::FocusEmail:
        m_outlets->orlecId->setFocus(Qt::OtherFocusReason);
        break;
    case CredentialStep::FocusPassword:
        m_outlets->password->setFocus(Qt::OtherFocusReason);
        break;
    case CredentialStep::SignIn:
        // A session that has just been opened elsewhere is not to be closed by this Return.
        if (m_with.session.sessionId().isEmpty()) {
            signInOrOut();
        }
        break;
    }
}

void BrevokPreferencesController::createAccount()
{
    // The pages lie below the service's base address, which may have a folder of its own.
    QUrl url = m_with.service;
    url.setPath(url.path() + u"/account/register"_s);
    m_with.urlOpener.open(url);
}

void BrevokPreferencesController::updateAccountPage()
{
    Ui::BrevokPreferences &ui = *m_outlets;
    const bool idle = !m_with.session.isUpdating();
    const bool signedIn = !m_with.session.sessionId().isEmpty();
    const QString email = m_with.session.orlecId();
    // What the user is typing stays.
    if (signedIn || !ui.orlecId->isModified()) {
        ui.orlecId->setText(email);
        ui.orlecId->setCursorPosition(0);
    }
    if (signedIn) {
        ui.password->clear();
    }
    setBreakableText(*ui.signedInAs,
        email.isEmpty() ? Texts::tr("Signed in") : Texts::tr("Signed in as %1.").arg(oneLine(email)));
    // A button that is disabled, or a field that goes, hands the focus on to whatever comes next.
    m_focusButton = m_focusButton || ui.actionButton->hasFocus()
        || (signedIn && ui.credentials->isAncestorOf(focusWidget()));
    showSession(idle, signedIn);
    ui.actionButton->setEnabled(idle);
    if (idle && std::exchange(m_focusButton, false)) {
        ui.actionButton->setFocus();
    }
}

void BrevokPreferencesController::showSession(bool idle, bool signedIn)
{
    Ui::BrevokPreferences &ui = *m_outlets;
    for (QWidget *widget : QList<QWidget *>{ui.accountHint, ui.credentials, ui.createAccountLink}) {
        widget->setVisible(!signedIn);
    }
    ui.signedInAs->setVisible(signedIn);
    ui.orlecId->setReadOnly(!idle);
    ui.password->setReadOnly(!idle);
    ui.actionButton->setText(signedIn ? Texts::tr("Sign Out") : Texts::tr("Sign In"));
    ui.actionButton->setProminent(!signedIn);
    if (!idle) {
        setBreakableText(*ui.brevokStatus, Texts::tr("Contacting the service…"));
    } else if (signedIn) {
        ui.brevokStatus->clear();
    } else if (const QString failure = m_with.session.signinFailure(); !failure.isEmpty()) {
        setBreakableText(*ui.brevokStatus, failure);
    } else {
        setBreakableText(*ui.brevokStatus, Texts::tr("Not signed in."));
    }
    ui.brevokStatus->setVisible(!idle || !signedIn);
}

// A choice that cannot be stored counts all the same, is tried again, and is said not to be stored until it
// is.
void BrevokPreferencesController::updateSettingsPage()
{
    for (const Setting &setting : allSettings()) {
        m_settingBoxes.value(setting.key)->setChecked(m_with.access.setting(setting).toInt() > 0);
    }
    NoticeText notice{Texts::tr("The setting could not be changed"), m_notKept, {}, {}};
    if (const QString problem = m_with.settings.problem(); !problem.isEmpty()) {
        notice = storageNotice(problem);
    }
    m_outlets->settingsProblem->setVisible(!notice.text.isEmpty());
    m_outlets->settingsProblem->setText(u"%1\n%2"_s.arg(notice.title, notice.text));
}

void BrevokPreferencesController::showSchedule(const std::optional<QDateTime> &next)
{
    const Ui::BrevokPreferences &ui = *m_outlets;
    const QString text = next
        ? Texts::tr("Used by scheduled updates. Next: %1.")
              .arg(QLocale().toString(next->toLocalTime(), QLocale::ShortFormat))
        : Texts::tr("Used by scheduled updates, which are not set up on this computer.");
    for (const auto &[box, note] :
        {std::pair(ui.notifications, ui.notificationsNote), std::pair(ui.autoUpdate, ui.autoUpdateNote)}) {
        note->setText(text);
        if (box->isEnabled()) { // else it says who manages the setting
            box->setAccessibleDescription(text);
        }
    }
}

// Login items and the settings file may have been edited by hand while the window was away.
void BrevokPreferencesController::showEvent(QShowEvent *event)
{
    updateSettingsPage();
    m_with.timerRuns.askNext(this, [this](const std::optional<QDateTime> &next) { showSchedule(next); });
    QMainWindow::showEvent(event);
}

void BrevokPreferencesController::hideEvent(QHideEvent *event)
{
    QMainWindow::hideEvent(event);
    if (!event->spontaneous()) {
        m_targetsPage->forget();
    }
}

void BrevokPreferencesController::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
        close();
    } else {
        QMainWindow::keyPressEvent(event);
    }
}

} // namespace brevok
