// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "surfaces/Surfaces.h"

namespace brevok {

/// The surfaces of a program without windows.
class HeadlessSurfaces final : public Surfaces {
public:
    void attach(const SurfaceContext &) override { }
    void detach() override { }
    [[nodiscard]] std::unique_ptr<StatusItemSurface> makeStatusItem() override;
    [[nodiscard]] std::unique_ptr<PanelSurface> makePanel() override;
    void showTargetsPreferences() override;
    void showUpdateProgress() override;
    void hideUpdateProgress() override { }
    void showUpdateResult(const QString &title, const QString &label) override;
};

} // namespace brevok
