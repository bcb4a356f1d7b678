// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>

namespace brevok {

class BrevokAboutController;
class BrevokUpdateProgressController;
class BrevokUpdateResultController;
class MainBundle;

/// The About window and the two windows of a check for updates, one of each, made when first asked for.
/// Main thread; goes before the application object.
class SmallWindows final {
public:
    /// @p bundle outlives this object.
    explicit SmallWindows(const MainBundle &bundle);
    ~SmallWindows();
    SmallWindows(const SmallWindows &) = delete;
    SmallWindows(SmallWindows &&) = delete;
    SmallWindows &operator=(const SmallWindows &) = delete;
    SmallWindows &operator=(SmallWindows &&) = delete;

    /// Released when its window closes: the next call makes a fresh one.
    [[nodiscard]] BrevokAboutController &aboutController();
    [[nodiscard]] BrevokUpdateProgressController &updateProgressController();
    [[nodiscard]] BrevokUpdateResultController &updateResultController();

private:
    const MainBundle &m_bundle;
    std::unique_ptr<BrevokAboutController> m_about;
    std::unique_ptr<BrevokUpdateProgressController> m_progress;
    std::unique_ptr<BrevokUpdateResultController> m_result;
};

} // namespace brevok
