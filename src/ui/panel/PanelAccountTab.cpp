// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelAccountTab.h"

#include "foundation/Texts.h"
#include "service/BrevokSession.h"
#include "ui/widgets/PanelStyle.h"
#include "ui_BrevokPanel.h"

namespace brevok {

PanelAccountTab::PanelAccountTab(Ui::BrevokPanel &ui, BrevokSession &session, QObject *parent)
    : QObject(parent)
    , m_ui(ui)
    , m_session(session)
{
    m_ui.orlecIdField->setInputMethodHints(Qt::ImhEmailCharactersOnly | Qt::ImhNoAutoUppercase);
    m_ui.passwordField->setInputMethodHints(
        Qt::ImhHiddenText | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    m_ui.orlecIdLabel->setBuddy(m_ui.orlecIdField);
    m_ui.passwordLabel->setBuddy(m_ui.passwordField);
    const QList<QWidget *> hiding = credentials();
    for (QWidget *widget : hiding) {
        QSizePolicy policy = widget->sizePolicy();
        policy.setRetainSizeWhenHidden(true); // the form stays where it is
        widget->setSizePolicy(policy);
    }
    for (QLineEdit *field : {m_ui.orlecIdField, m_ui.passwordField}) {
        connect(field, &QLineEdit::returnPressed, this, [this, field] { returnOnCredentials(field); });
    }
    connect(m_ui.signInButton, &QPushButton::clicked, this, &PanelAccountTab::signIn);
    connect(m_ui.createButton, &QPushButton::clicked, this, &PanelAccountTab::createAccountWanted);
    updateTexts();
}

PanelAccountTab::~PanelAccountTab() = default;

void PanelAccountTab::updateTexts()
{
    m_ui.accountTitle->setFont(PanelStyle::headingFont(20));
    m_ui.accountTitle->setText(Texts::tr("Sign in"));
    m_ui.accountText->setFont(PanelStyle::font(13));
    m_ui.accountText->setText(Texts::tr(
        "Tolvane Brevok installs your Plug-Ins in InDesign and InCopy and keeps them up to date: sign in "
        "with your account to begin."));
    m_ui.orlecIdLabel->setText(Texts::tr("&Email address"));
    m_ui.passwordLabel->setText(Texts::tr("&Password"));
    m_ui.signInButton->setText(Texts::tr("Sign In"));
    m_ui.createButton->setText(Texts::tr("Create Account…"));
    m_ui.orlecIdField->setAccessibleName(Texts::tr("Email address"));
    m_ui.passwordField->setAccessibleName(Texts::tr("Password"));
    m_ui.progressIndicator->setAccessibleName(Texts::tr("Contacting the service"));
    m_ui.progressText->setText(Texts::tr("Contacting the service…"));
    m_ui.progressText->setFont(PanelStyle::font(13));
    m_ui.signInFailure->setFont(PanelStyle::font(13));
    m_ui.signInButton->setFont(PanelStyle::font(14));
    m_ui.createButton->setFont(PanelStyle::font(14));
}

QList<QWidget *> PanelAccountTab::credentials() const
{
    return {m_ui.passwordLabel, m_ui.passwordField, m_ui.signInButton, m_ui.createButton};
}

PanelTab PanelAccountTab::selectedTab() const
{
    return m_ui.tabView->currentWidget() == m_ui.packagesTab ? PanelTab::Packages : PanelTab::Account;
}

void PanelAccountTab::updateAccountTab(bool panelOpen)
{
    const AccountTabState state = accountTabState({.updating = m_session.isUpdating(),
        .signedIn = !m_session.sessionId().isNull(),
        .selected = selectedTab(),
        .panelOpen = panelOpen});
    const bool hidBefore = m_ui.passwordField->isHidden();
    m_ui.orlecIdField->setEnabled(state.emailEnabled);
    m_ui.passwordField->setEnabled(state.controlsEnabled);
    m_ui.signInButton->setEnabled(state.controlsEnabled);
    m_ui.createButton->setEnabled(state.controlsEnabled);
    const QList<QWidget *> hiding = credentials();
    for (QWidget *widget : hiding) {
        widget->setVisible(state.controlsVisible);
    }
    m_ui.signInSteps->setCurrentWidget(state.spinning ? m_ui.progressBox : m_ui.credentialsBox);
    m_ui.signInFailure->setFailure(state.controlsVisible ? m_session.signinFailure() : QString());
    if (state.spinning) {
        m_ui.progressIndicator->startAnimation();
    } else {
        m_ui.progressIndicator->stopAnimation();
    }
    if (const QString email = m_session.orlecId(); email != m_ui.orlecIdField->text()) {
        m_ui.orlecIdField->setText(email);
    }
    if (!m_session.isUpdating() && !m_session.sessionId().isNull()) {
        m_ui.passwordField->clear(); // it has done its work
    }
    if (state.showPackagesTab) {
        showPackagesTab();
    }
    if (state.showAccountTab) {
        m_ui.passwordField->clear();
        showAccountTab();
    } else if (hidBefore && state.controlsVisible && panelOpen && selectedTab() == PanelTab::Account) {
        focusFirst(); // the request that hid the fields has failed
    }
}

void PanelAccountTab::showAccountTab()
{
    m_ui.tabView->showPage(m_ui.accountTab);
}

void PanelAccountTab::showPackagesTab()
{
    m_ui.tabView->showPage(m_ui.packagesTab);
}

void PanelAccountTab::chooseInitialTab()
{
    m_ui.tabView->setAnimated(false);
    if (m_session.sessionId().isNull()) {
        showAccountTab();
    } else {
        showPackagesTab();
    }
    m_ui.tabView->setAnimated(true);
}

void PanelAccountTab::signIn()
{
    if (!m_session.isUpdating()) {
        m_session.signinWithID(m_ui.orlecIdField->text(), m_ui.passwordField->text());
    }
}

void PanelAccountTab::returnOnCredentials(const QLineEdit *sender)
{
    switch (brevok::returnOnCredentials(
        sender == m_ui.orlecIdField, m_ui.orlecIdField->text(), m_ui.passwordField->text())) {
    case CredentialStep::None:
        break;
    case CredentialStep::FocusEmail:
        m_ui.orlecIdField->setFocus();
        break;
    case CredentialStep::FocusPassword:
        m_ui.passwordField->setFocus();
        break;
    case CredentialStep::SignIn:
        signIn();
        break;
    }
}

void PanelAccountTab::focusFirst()
{
    QLineEdit *field = m_ui.orlecIdField->text().isEmpty() ? m_ui.orlecIdField : m_ui.passwordField;
    field->setFocus(Qt::OtherFocusReason);
    field->selectAll();
}

} // namespace brevok
