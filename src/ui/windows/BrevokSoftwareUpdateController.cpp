// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/BrevokSoftwareUpdateController.h"

#include "foundation/Texts.h"
#include "platform/UrlOpener.h"
#include "ui/widgets/TextFitting.h"
#include "ui/windows/ApplicationFacts.h"
#include "ui/windows/SoftwareUpdateFace.h"
#include "ui_BrevokSoftwareUpdate.h"
#include "updates/BrevokSelfUpdater.h"

namespace brevok {

namespace {

void setShownText(QLabel &label, const QString &text)
{
    label.setText(breakable(text));
    label.setVisible(!text.isEmpty());
}

void setShownTitle(QPushButton &button, const QString &title)
{
    button.setText(title);
    button.setVisible(!title.isEmpty());
}

} // namespace

BrevokSoftwareUpdateController::BrevokSoftwareUpdateController(Collaborators with, QWidget *parent)
    : QDialog(parent)
    , m_with(with)
    , m_outlets(std::make_unique<Ui::BrevokSoftwareUpdate>())
{
    m_outlets->setupUi(this);
    setWindowTitle(Texts::tr("Software Update"));
    m_outlets->icon->setPixmap(
        applicationIcon(with.bundle).pixmap(m_outlets->icon->minimumSize(), devicePixelRatioF()));
    QFont bold = m_outlets->headline->font();
    bold.setBold(true);
    m_outlets->headline->setFont(bold);
    m_outlets->notes->setAccessibleName(Texts::tr("Release notes"));
    m_outlets->skip->setText(Texts::tr("Skip This Version"));
    m_outlets->later->setText(Texts::tr("Remind Me Later"));
    m_outlets->cancel->setText(Texts::tr("Cancel"));
    connectButtons();
    connect(&with.updater, &BrevokSelfUpdater::stateChanged, this, &BrevokSoftwareUpdateController::follow);
    connect(
        &with.updater, &BrevokSelfUpdater::windowWanted, this, &BrevokSoftwareUpdateController::showWindow);
    follow();
}

BrevokSoftwareUpdateController::~BrevokSoftwareUpdateController() = default;

void BrevokSoftwareUpdateController::connectButtons()
{
    BrevokSelfUpdater &updater = m_with.updater;
    connect(m_outlets->install, &QPushButton::clicked, &updater, &BrevokSelfUpdater::installUpdate);
    connect(m_outlets->skip, &QPushButton::clicked, &updater, &BrevokSelfUpdater::skipVersion);
    for (const QPushButton *button : {m_outlets->later, m_outlets->cancel, m_outlets->ok}) {
        connect(button, &QPushButton::clicked, this, &BrevokSoftwareUpdateController::reject);
    }
    connect(m_outlets->notes, &QTextBrowser::anchorClicked, this, [this](const QUrl &link) {
        if (link.scheme() == QLatin1StringView("https")) {
            m_with.urls.open(link);
        }
    });
}

void BrevokSoftwareUpdateController::follow()
{
    const UpdateState &state = m_with.updater.state();
    if (state.phase == UpdateState::Phase::Idle) {
        m_shownPhase = state.phase;
        hide();
        return;
    }
    using Bar = SoftwareUpdateFace::Bar;
    const SoftwareUpdateFace face = faceFor(state);
    setShownText(*m_outlets->headline, face.headline);
    setShownText(*m_outlets->text, face.text);
    setShownText(*m_outlets->progressText, face.progress);
    m_outlets->notes->setNotes(state.notes);
    m_outlets->notes->setVisible(face.notes && !state.notes.isEmpty());
    m_outlets->progress->setVisible(face.bar != Bar::None);
    m_outlets->progress->setRange(0, face.bar == Bar::Part ? 1000 : 0);
    m_outlets->progress->setValue(face.permille);
    m_outlets->progress->setAccessibleName(face.headline);
    m_outlets->skip->setVisible(face.skip);
    m_outlets->later->setVisible(face.later);
    m_outlets->cancel->setVisible(face.cancel);
    setShownTitle(*m_outlets->ok, face.ok);
    setShownTitle(*m_outlets->install, face.install);
    layOut();
    if (std::exchange(m_shownPhase, state.phase) != state.phase) {
        for (QPushButton *button : {m_outlets->install, m_outlets->ok, m_outlets->cancel}) {
            if (button->isVisibleTo(this)) {
                button->setFocus();
                break;
            }
        }
    }
}

// Without notes there is nothing to make room for.
void BrevokSoftwareUpdateController::layOut()
{
    const bool tall = m_outlets->notes->isVisibleTo(this);
    const int width = std::max(this->width(), minimumSizeHint().width());
    const int fitting = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width)
                                                      : layout()->totalSizeHint().height();
    if (!tall) {
        resize(width, fitting);
    } else if (height() < fitting) {
        resize(width, std::max(fitting, 420));
    }
}

void BrevokSoftwareUpdateController::showWindow()
{
    const UpdateState &state = m_with.updater.state();
    if (state.phase == UpdateState::Phase::Idle) {
        return;
    }
    follow();
    setAttribute(Qt::WA_ShowWithoutActivating, !state.byUser);
    show();
    raise();
    if (state.byUser) {
        activateWindow();
    }
}

void BrevokSoftwareUpdateController::reject()
{
    hide();
    m_with.updater.dismiss();
}

} // namespace brevok
