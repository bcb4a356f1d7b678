// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/BrevokUpdateResultController.h"

#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"
#include "ui/widgets/TextFitting.h"

#include <QLabel>
#include <QPushButton>

namespace brevok {

using namespace Qt::StringLiterals;

BrevokUpdateResultController::BrevokUpdateResultController(const MainBundle &bundle)
    : SmallWindow(bundle, u"BrevokUpdateResult"_s, {420, 160})
    , m_title(addText(u"title"_s))
    , m_label(addText(u"label"_s))
{
    QFont bold = m_title.font();
    bold.setBold(true);
    m_title.setFont(bold);
    addSpace();
    addButton(u"ok"_s, Texts::tr("OK"), [this] { ok(); }).setDefault(true);
}

BrevokUpdateResultController::~BrevokUpdateResultController() = default;

void BrevokUpdateResultController::setTitleString(const QString &title)
{
    setWindowTitle(oneLine(title));
    setBreakableText(m_title, title);
}

void BrevokUpdateResultController::setLabelString(const QString &label)
{
    setBreakableText(m_label, label);
}

void BrevokUpdateResultController::ok()
{
    close();
}

} // namespace brevok
