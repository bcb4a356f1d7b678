// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/StoreWaiter.h"

#include <QUrl>

namespace brevok {

/// What the session starts at login. Main thread.
class LoginItems {
public:
    LoginItems() = default;
    virtual ~LoginItems() = default;
    Q_DISABLE_COPY_MOVE(LoginItems)

    /// Whether an item for exactly @p application exists; false when the list cannot be read.
    [[nodiscard]] virtual bool contains(const QUrl &application) const = 0;
    /// Sees that there is an item for @p application, or none: contains() says so at once, the disk follows.
    /// A failure is logged, and @p waiter alone hears of it.
    virtual void set(const QUrl &application, bool wanted, StoreWaiter waiter) = 0;
};

} // namespace brevok
