// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

namespace brevok {

/// Hears nothing, or why it could not be stored.
using StoreDone = std::function<void(const std::optional<BrevokError> &)>;

/// Who is told what became of changes, while the context lives.
class StoreWaiter {
public:
    StoreWaiter() = default;
    StoreWaiter(QObject *context, StoreDone done)
        : m_hasContext(context != nullptr)
        , m_context(context)
        , m_done(std::move(done))
    {
    }
    [[nodiscard]] bool isThere() const { return m_done && (!m_hasContext || m_context); }
    void tell(const std::optional<BrevokError> &error) const
    {
        if (isThere()) {
            m_done(error);
        }
    }

private:
    bool m_hasContext = false;
    QPointer<QObject> m_context;
    StoreDone m_done;
};

} // namespace brevok
