// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/BrevokUpdateProgressController.h"

#include "foundation/Texts.h"

#include <QLabel>
#include <QProgressBar>

namespace brevok {

using namespace Qt::StringLiterals;

BrevokUpdateProgressController::BrevokUpdateProgressController(const MainBundle &bundle)
    : SmallWindow(bundle, u"BrevokUpdateProgress"_s, {420, 150})
{
    setWindowTitle(Texts::tr("Checking for Updates"));
    const QLabel &label = addText(u"label"_s, Texts::tr("Checking for updates…"));
    auto *indicator = new QProgressBar(this);
    indicator->setObjectName(u"indicator"_s);
    indicator->setRange(0, 0);
    indicator->setTextVisible(false);
    indicator->setAccessibleName(label.text());
    add(*indicator);
    addSpace();
    addButton(u"cancel"_s, Texts::tr("Cancel"), [this] { cancel(); });
}

BrevokUpdateProgressController::~BrevokUpdateProgressController() = default;

void BrevokUpdateProgressController::cancel()
{
    close();
}

} // namespace brevok
