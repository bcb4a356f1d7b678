// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/BrevokUpdateProgressController.h"

#include "foundation/Texts.h"
#include "ui/windows/ApplicationFacts.h"
#include "ui_BrevokUpdateProgress.h"

namespace brevok {

BrevokUpdateProgressController::BrevokUpdateProgressController(const MainBundle &bundle, QWidget *parent)
    : QDialog(parent)
    , m_outlets(std::make_unique<Ui::BrevokUpdateProgress>())
{
    m_outlets->setupUi(this);
    setWindowTitle(Texts::tr("Checking for Updates"));
    m_outlets->icon->setPixmap(
        applicationIcon(bundle).pixmap(m_outlets->icon->minimumSize(), devicePixelRatioF()));
    m_outlets->label->setText(Texts::tr("Checking for updates…"));
    m_outlets->indicator->setAccessibleName(m_outlets->label->text());
    m_outlets->cancel->setText(Texts::tr("Cancel"));
    connect(m_outlets->cancel, &QPushButton::clicked, this, &BrevokUpdateProgressController::cancel);
}

BrevokUpdateProgressController::~BrevokUpdateProgressController() = default;

void BrevokUpdateProgressController::showWindow()
{
    show();
    raise();
    activateWindow();
}

void BrevokUpdateProgressController::cancel()
{
    close();
}

} // namespace brevok
