// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/BrevokAboutController.h"

#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"
#include "ui/windows/ApplicationFacts.h"

#include <QLabel>

namespace brevok {

using namespace Qt::StringLiterals;

BrevokAboutController::BrevokAboutController(const MainBundle &bundle)
    : SmallWindow(bundle, u"BrevokAbout"_s, {340, 280}, Arrangement::BelowIcon)
{
    setAttribute(Qt::WA_DeleteOnClose);
    const ApplicationFacts facts = applicationFacts(bundle);
    setWindowTitle(Texts::tr("About %1").arg(oneLine(facts.appName)));
    QLabel &name = addText(u"name"_s, facts.appName);
    QFont large = name.font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    large.setBold(true);
    name.setFont(large);
    addText(u"version"_s, facts.versionLine());
    addSpace();
    addText(u"copyright"_s, facts.appCopyright);
}

BrevokAboutController::~BrevokAboutController() = default;

} // namespace brevok
