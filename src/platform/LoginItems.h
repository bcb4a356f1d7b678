// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QUrl>

#include <functional>

namespace brevok {

/// What the session starts at login. Main thread.
class LoginItems {
public:
    LoginItems() = default;
    virtual ~LoginItems() = default;
    Q_DISABLE_COPY_MOVE(LoginItems)

    /// Whether an item for exactly @p application exists; false when the list cannot be read.
    [[nodiscard]] virtual bool contains(const QUrl &application) const = 0;
    /// Adds an item for @p application, removes it: contains() says so at once, the disk follows. Failure is
    /// logged.
    virtual void insert(const QUrl &application) = 0;
    virtual void remove(const QUrl &application) = 0;
    /// @p done hears, while @p context lives, why the changes so far could not be made; empty when they were.
    virtual void whenWritten(QObject *context, std::function<void(const QString &problem)> done) = 0;
};

} // namespace brevok
