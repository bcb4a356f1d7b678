// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/HeadlessSurfaces.h"

#include "foundation/Log.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

class HeadlessStatusItem final : public StatusItemSurface {
public:
    void setUpdates(int updates) override
    {
        if (updates != m_updates) {
            logLine(u"Packages waiting for an update: %1"_s.arg(updates));
        }
        m_updates = updates;
    }
    [[nodiscard]] bool hasActiveIcon() const override { return m_active; }
    void setHasActiveIcon(bool active) override { m_active = active; }

private:
    int m_updates = 0;
    bool m_active = false;
};

class HeadlessPanel final : public PanelSurface {
public:
    using PanelSurface::PanelSurface;

    [[nodiscard]] bool hasActivePanel() const override { return false; }
    void setHasActivePanel(bool active) override
    {
        if (active) {
            openPanel();
        }
    }
    void openPanel() override
    {
        logLine(u"The panel was asked for; this copy runs without windows."_s);
        Q_EMIT hasActivePanelChanged(false);
    }
    void setKeepOpenPanel(bool) override { }
};

} // namespace

std::unique_ptr<StatusItemSurface> HeadlessSurfaces::makeStatusItem()
{
    return std::make_unique<HeadlessStatusItem>();
}

std::unique_ptr<PanelSurface> HeadlessSurfaces::makePanel()
{
    return std::make_unique<HeadlessPanel>();
}

void HeadlessSurfaces::showTargetsPreferences()
{
    logLine(u"Please review the list of target applications (brevokctl targets)."_s);
}

void HeadlessSurfaces::showUpdateProgress()
{
    logLine(u"Checking for Plug-In updates."_s);
}

void HeadlessSurfaces::showUpdateResult(const QString &title, const QString &label)
{
    logLine(u"%1 %2"_s.arg(title, label));
}

} // namespace brevok
