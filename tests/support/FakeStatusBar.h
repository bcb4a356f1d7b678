// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/statusitem/StatusBar.h"

#include <QList>

namespace brevok::testing {

/// A bar of memory: what its one item was told, and what it tells.
class FakeStatusBar final : public StatusBar {
public:
    class Item final : public StatusItem {
    public:
        Item(FakeStatusBar &bar, double length)
            : m_bar(bar)
        {
            m_bar.item = this;
            m_bar.lengths.append(length);
        }
        ~Item() override { m_bar.item = nullptr; }
        Q_DISABLE_COPY_MOVE(Item)

        [[nodiscard]] double length() const override { return m_bar.lengths.last(); }
        void setLength(double length) override { m_bar.lengths.append(length); }
        [[nodiscard]] QSizeF buttonSize() const override { return {length(), m_bar.thickness()}; }
        [[nodiscard]] qreal devicePixelRatio() const override { return m_bar.ratio; }
        void setFace(const StatusItemFace &face) override { m_bar.faces.append(face); }
        [[nodiscard]] std::optional<QRect> frameOnScreen() const override { return m_bar.frame; }
        [[nodiscard]] QScreen *screen() const override { return nullptr; }

    private:
        FakeStatusBar &m_bar;
    };

    [[nodiscard]] double thickness() const override { return 24.0; }
    [[nodiscard]] std::unique_ptr<StatusItem> makeItem(double length) override
    {
        return std::make_unique<Item>(*this, length);
    }

    Item *item = nullptr; ///< null while the bar is empty
    QList<double> lengths;
    QList<StatusItemFace> faces;
    std::optional<QRect> frame;
    qreal ratio = 1;
};

} // namespace brevok::testing
