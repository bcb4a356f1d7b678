// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

namespace brevok {

class BrevokAlertQueue;
class StateStore;

/// Tells the user, once, what is wrong with the stored state. Main thread.
class StateNotices final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(StateNotices)

public:
    StateNotices(const StateStore &state, BrevokAlertQueue &alerts, QObject *parent = nullptr);
    ~StateNotices() override;
};

} // namespace brevok
