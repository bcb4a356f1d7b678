// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SettingsStore.h"

#include <QTest>

namespace brevok::testing {

/// Waits until the store says what became of its changes. @return why they are not stored; empty when they
/// are
inline QString whyNotStored(SettingsStore &store)
{
    constexpr int patience = 60000; // a lock that its owner could not even fill in counts for 30 s
    const auto reason = std::make_shared<std::optional<QString>>();
    store.synchronize(
        &store, [reason](const auto &error) { *reason = error ? error->description : QString(); });
    return QTest::qWaitFor([&reason] { return reason->has_value(); }, patience) ? **reason
                                                                                : QStringLiteral("no answer");
}

inline bool isStored(SettingsStore &store)
{
    return whyNotStored(store).isEmpty();
}

} // namespace brevok::testing
