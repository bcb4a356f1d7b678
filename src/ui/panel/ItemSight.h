// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/panel/PanelLayout.h"

#include <functional>

class QScreen;

namespace brevok {

class StatusItemPlace;

/// Where the status item is seen now, and so where the panel goes. Main thread.
class ItemSight final {
public:
    /// @p item answers where the status item is, null while there is none.
    explicit ItemSight(std::function<const StatusItemPlace *()> item)
        : m_item(std::move(item))
    {
    }

    /// Nothing when it is not known.
    [[nodiscard]] std::optional<QRect> frame() const;
    /// The item's, else the first one.
    [[nodiscard]] QScreen *screen() const;
    /// Where the panel would open.
    [[nodiscard]] PanelPlace panel() const;

private:
    std::function<const StatusItemPlace *()> m_item;
};

} // namespace brevok
