// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/StateStore.h"

namespace brevok {

class SettingsStore;

/// Moves what earlier versions kept in the settings file into the state store, before anybody reads that. It
/// leaves the file only when it is stored. Where the file could not be written after that, the next start
/// knows what it took already. Main thread.
class StateTakeOver final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(StateTakeOver)

public:
    StateTakeOver(SettingsStore &settings, StateStore &state, QObject *parent = nullptr);
    ~StateTakeOver() override;

private:
    void run();
    [[nodiscard]] StateChanges converted(const QString &key);
    [[nodiscard]] StateChanges convertedRecords(const QString &key);

    SettingsStore &m_settings;
    StateStore &m_state;
};

} // namespace brevok
