// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/BrevokUpdateResultController.h"

#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"
#include "ui/widgets/TextFitting.h"
#include "ui/windows/ApplicationFacts.h"
#include "ui_BrevokUpdateResult.h"

namespace brevok {

BrevokUpdateResultController::BrevokUpdateResultController(const MainBundle &bundle, QWidget *parent)
    : QDialog(parent)
    , m_outlets(std::make_unique<Ui::BrevokUpdateResult>())
{
    m_outlets->setupUi(this);
    m_outlets->icon->setPixmap(
        applicationIcon(bundle).pixmap(m_outlets->icon->minimumSize(), devicePixelRatioF()));
    QFont bold = m_outlets->title->font();
    bold.setBold(true);
    m_outlets->title->setFont(bold);
    m_outlets->ok->setText(Texts::tr("OK"));
    connect(m_outlets->ok, &QPushButton::clicked, this, &BrevokUpdateResultController::ok);
}

BrevokUpdateResultController::~BrevokUpdateResultController() = default;

void BrevokUpdateResultController::showWindow()
{
    setWindowTitle(oneLine(titleString));
    setBreakableText(*m_outlets->title, titleString);
    setBreakableText(*m_outlets->label, labelString);
    show();
    raise();
    activateWindow();
}

void BrevokUpdateResultController::ok()
{
    close();
}

} // namespace brevok
