// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

namespace brevok {

class SettingsStore;
class StateStore;

/// Whether what the program keeps and what the user chooses can be stored now. Main thread.
class StorageWatch final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(StorageWatch)

public:
    /// Both outlive this.
    StorageWatch(SettingsStore &settings, StateStore &state, QObject *parent = nullptr);
    ~StorageWatch() override;

    /// Why not; empty in good weather.
    [[nodiscard]] QString problem() const;
    /// The user made room: nobody waits for the next attempt.
    void tryAgain();

Q_SIGNALS:
    /// problem() came, or went.
    void changed();

private:
    SettingsStore &m_settings;
    StateStore &m_state;
};

} // namespace brevok
