// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DistributedNotifications.h"
#include "platform/LoginItems.h"
#include "platform/UrlOpener.h"

namespace brevok {

/// Opens nothing.
class NullUrlOpener final : public UrlOpener {
public:
    bool open(const QUrl &) override { return false; }
};

/// Reaches nobody and hears nothing.
class NullDistributedNotifications final : public DistributedNotifications {
public:
    using DistributedNotifications::DistributedNotifications;

    void post(const QString &, const QString &) override { }
    void observe(const QString &, const QString &) override { }
};

/// A session that starts nothing at login.
class NullLoginItems final : public LoginItems {
public:
    [[nodiscard]] bool contains(const QUrl &) const override { return false; }
    void insert(const QUrl &) override { }
    void remove(const QUrl &) override { }
};

} // namespace brevok
