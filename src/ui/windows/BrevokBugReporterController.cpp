// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/BrevokBugReporterController.h"

#include "alerts/BrevokAlertQueue.h"
#include "foundation/Texts.h"
#include "ui/windows/ReportBodyView.h"
#include "ui_BrevokBugReporter.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAccessible>
#include <QLineEdit>

#include <utility>

namespace brevok {

namespace {

BrevokBugReporterController *sharedController = nullptr;

} // namespace

BrevokBugReporterController::BrevokBugReporterController(Collaborators collaborators, QWidget *parent)
    : QDialog(parent)
    , m_with(std::move(collaborators))
    , m_outlets(std::make_unique<Ui::BrevokBugReporter>())
{
    if (sharedController == nullptr) {
        sharedController = this;
    }
    m_outlets->setupUi(this);
    m_outlets->email->setInputMethodHints(Qt::ImhEmailCharactersOnly | Qt::ImhNoAutoUppercase);
    QSizePolicy policy = m_outlets->indicator->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_outlets->indicator->setSizePolicy(policy);
    setTexts();
    showProgress({});
    connect(m_outlets->send, &QPushButton::clicked, this, &BrevokBugReporterController::report);
    connect(m_outlets->showBody, &QPushButton::clicked, this, &BrevokBugReporterController::showBody);
}

BrevokBugReporterController::~BrevokBugReporterController()
{
    if (sharedController == this) {
        sharedController = nullptr;
    }
}

BrevokBugReporterController *BrevokBugReporterController::bugReporterController()
{
    return sharedController;
}

void BrevokBugReporterController::setTexts()
{
    setWindowTitle(Texts::tr("Report a Bug"));
    m_outlets->emailLabel->setText(Texts::tr("Your &email address:"));
    m_outlets->noteLabel->setText(
        Texts::tr("What went &wrong, and what were you doing when the problem came up?"));
    // One sentence a line: not every language puts a blank between them.
    m_outlets->hint->setText(
        Texts::tr("The application's state, its logs and its latest crash reports are included.") + u'\n'
        + Texts::tr("InDesign's latest crash report is included too."));
    m_outlets->showBody->setText(Texts::tr("Show what will be sent"));
    m_outlets->send->setText(Texts::tr("Send"));
}

void BrevokBugReporterController::showWindow()
{
    if (!m_outlets->email->isModified() && m_outlets->email->isEnabled()) {
        m_outlets->email->setText(m_with.account());
    }
    if (!isVisible()) {
        focusFault();
    }
    show();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

QString BrevokBugReporterController::noteText() const
{
    return m_outlets->note->toPlainText();
}

void BrevokBugReporterController::report()
{
    m_with.reporter.report({
        .email = m_outlets->email->text(),
        .note = noteText(),
        .context = this,
        .stage = [this](BugReporter::Stage stage) { showStage(stage); },
        .done = [this](const ReportOutcome &outcome) { showOutcome(outcome); },
    });
}

void BrevokBugReporterController::showStage(BugReporter::Stage stage)
{
    switch (stage) {
    case BugReporter::Stage::Checking:
        setFormEnabled(false);
        showProgress(Texts::tr("Checking the connection…"));
        break;
    case BugReporter::Stage::Gathering:
        showProgress(Texts::tr("Gathering the report…"));
        break;
    case BugReporter::Stage::Sending:
        showProgress(Texts::tr("Sending the report…"));
        break;
    }
}

void BrevokBugReporterController::showOutcome(const ReportOutcome &outcome)
{
    if (outcome.kind == ReportOutcome::Kind::Invalid) { // found before the form was disabled
        focusFault();
    } else {
        setFormEnabled(true);
    }
    if (outcome.kind == ReportOutcome::Kind::Unreachable) {
        auto alert = std::make_shared<BrevokBlockingAlert>(
            m_with.alerts.presenter(), &m_with.alerts.panel(), outcome.alert);
        alert->beginSheetModalForWindow(this, [alert](int) {});
        return;
    }
    if (outcome.sent) {
        m_outlets->note->clear();
    }
    const std::shared_ptr<BrevokAlert> alert = BrevokAlert::create(m_with.alerts.presenter());
    alert->content = outcome.alert;
    // The alert lives as long as its sheet is open.
    alert->openSheetModalForWindow(this, [alert](int) {});
}

// The first field that keeps the report from being sent.
void BrevokBugReporterController::focusFault()
{
    QWidget *field = m_outlets->note;
    if (!NSStringIsValidEmail(m_outlets->email->text())) {
        field = m_outlets->email;
    }
    field->setFocus(Qt::OtherFocusReason);
}

void BrevokBugReporterController::setSubViews(QWidget &view, bool enabled)
{
    const QList<QWidget *> controls = view.findChildren<QWidget *>();
    for (QWidget *control : controls) {
        if (qobject_cast<QAbstractButton *>(control) != nullptr
            || qobject_cast<QLineEdit *>(control) != nullptr
            || qobject_cast<QAbstractScrollArea *>(control) != nullptr) {
            control->setEnabled(enabled);
        }
    }
}

// A disabled control loses the keyboard focus, which comes back with the form.
void BrevokBugReporterController::setFormEnabled(bool enabled)
{
    if (!enabled) {
        m_focused = focusWidget();
    }
    setSubViews(*m_outlets->form, enabled);
    setSubViews(*m_outlets->buttons, enabled);
    if (enabled) {
        showProgress({});
        if (m_focused) {
            m_focused->setFocus(Qt::OtherFocusReason);
        }
    }
}

void BrevokBugReporterController::showProgress(const QString &text)
{
    const bool busy = !text.isEmpty();
    m_outlets->progressText->setText(text);
    m_outlets->indicator->setVisible(busy);
    if (busy) {
        m_outlets->indicator->startAnimation();
        QAccessibleEvent changed(m_outlets->progressText, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&changed);
    } else {
        m_outlets->indicator->stopAnimation();
    }
}

void BrevokBugReporterController::showBody()
{
    if (std::exchange(m_gathering, true)) { // the button stays enabled, so that it keeps the focus
        return;
    }
    showProgress(Texts::tr("Gathering the report…"));
    m_with.reporter.reportBody(
        m_outlets->email->text(), noteText(), this, [this](const QByteArray &body) { presentBody(body); });
}

// The report may have been sent meanwhile, and then the progress is that report's.
void BrevokBugReporterController::presentBody(const QByteArray &body)
{
    m_gathering = false;
    if (m_outlets->email->isEnabled()) {
        showProgress({});
    }
    if (!isVisible()) {
        return;
    }
    auto *view = new ReportBodyView(body, this);
    view->setAttribute(Qt::WA_DeleteOnClose);
    view->open();
}

} // namespace brevok
