// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/StorageWatch.h"

#include "platform/SettingsStore.h"
#include "platform/StateStore.h"

namespace brevok {

StorageWatch::StorageWatch(SettingsStore &settings, StateStore &state, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_state(state)
{
    connect(&settings, &SettingsStore::troubled, this, &StorageWatch::changed);
    connect(&settings, &SettingsStore::mended, this, &StorageWatch::changed);
    connect(&state, &StateStore::troubled, this, &StorageWatch::changed);
    connect(&state, &StateStore::mended, this, &StorageWatch::changed);
}

StorageWatch::~StorageWatch() = default;

QString StorageWatch::problem() const
{
    const QString problem = m_state.problem();
    return problem.isEmpty() ? m_settings.problem() : problem;
}

void StorageWatch::tryAgain()
{
    m_state.commit({}, this, [](const auto &) {});
    m_settings.synchronize(this, [](const auto &) {});
}

} // namespace brevok
