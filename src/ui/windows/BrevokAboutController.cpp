// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/BrevokAboutController.h"

#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"
#include "ui/widgets/TextFitting.h"
#include "ui/windows/ApplicationFacts.h"
#include "ui_BrevokAbout.h"

namespace brevok {

BrevokAboutController::BrevokAboutController(const MainBundle &bundle, QWidget *parent)
    : QDialog(parent)
    , m_outlets(std::make_unique<Ui::BrevokAbout>())
{
    m_outlets->setupUi(this);
    const ApplicationFacts facts = applicationFacts(bundle);
    setWindowTitle(Texts::tr("About %1").arg(oneLine(facts.appName)));
    m_outlets->icon->setPixmap(
        applicationIcon(bundle).pixmap(m_outlets->icon->minimumSize(), devicePixelRatioF()));
    QFont large = m_outlets->name->font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    large.setBold(true);
    m_outlets->name->setFont(large);
    setBreakableText(*m_outlets->name, facts.appName);
    setBreakableText(*m_outlets->version, facts.versionLine());
    setBreakableText(*m_outlets->copyright, facts.appCopyright);
}

BrevokAboutController::~BrevokAboutController() = default;

void BrevokAboutController::showWindow()
{
    show();
    raise();
    activateWindow();
}

} // namespace brevok
