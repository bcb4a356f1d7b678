// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/windows/SmallWindow.h"

namespace brevok {

/// Tells what a check for updates found: `icon`, `title`, `label`.
class BrevokUpdateResultController final : public SmallWindow {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokUpdateResultController)

public:
    explicit BrevokUpdateResultController(const MainBundle &bundle);
    ~BrevokUpdateResultController() override;

    /// The texts to show, localised.
    void setTitleString(const QString &title);
    void setLabelString(const QString &label);
    /// Closes the window.
    void ok();

private:
    QLabel &m_title;
    QLabel &m_label;
};

} // namespace brevok
