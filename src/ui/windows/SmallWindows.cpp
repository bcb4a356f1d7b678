// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/SmallWindows.h"

#include "ui/windows/BrevokAboutController.h"
#include "ui/windows/BrevokUpdateProgressController.h"
#include "ui/windows/BrevokUpdateResultController.h"

namespace brevok {

SmallWindows::SmallWindows(const MainBundle &bundle)
    : m_bundle(bundle)
{
}

SmallWindows::~SmallWindows() = default;

BrevokAboutController &SmallWindows::aboutController()
{
    if (!m_about) {
        m_about = std::make_unique<BrevokAboutController>(m_bundle);
        // Later, because it is the window that calls this.
        QObject::connect(
            m_about.get(), &QDialog::finished, m_about.get(), [this] { m_about.release()->deleteLater(); });
    }
    return *m_about;
}

BrevokUpdateProgressController &SmallWindows::updateProgressController()
{
    if (!m_progress) {
        m_progress = std::make_unique<BrevokUpdateProgressController>(m_bundle);
    }
    return *m_progress;
}

BrevokUpdateResultController &SmallWindows::updateResultController()
{
    if (!m_result) {
        m_result = std::make_unique<BrevokUpdateResultController>(m_bundle);
    }
    return *m_result;
}

} // namespace brevok
