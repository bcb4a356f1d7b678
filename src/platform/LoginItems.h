// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

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
    /// Adds an item for @p application. @return why it could not, which is logged too; empty when it is there
    virtual QString insert(const QUrl &application) = 0;
    /// Removes the item of @p application. @return as insert()
    virtual QString remove(const QUrl &application) = 0;
};

} // namespace brevok
