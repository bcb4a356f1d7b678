// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "control/ControlCall.h"
#include "platform/FileState.h"

#include <QObject>

#include <functional>
#include <optional>

namespace brevok {

class BrevokTargetApps;

/// The calls that change the list of targets. Each is answered when the change is stored.
class TargetCalls final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TargetCalls)

public:
    TargetCalls(BrevokTargetApps &targets, StateStore &state, QObject *parent);
    ~TargetCalls() override;

    void add(const ControlCall &call, const QString &path, const QString &type, const QString &version);
    void remove(const ControlCall &call, const QString &path);
    void setEnabled(const ControlCall &call, const QString &path, bool enabled);

private:
    void change(const ControlCall &call, const QString &path,
        const std::function<void(const QString &known)> &change);
    /// Answers with what @p act returns, a reason to refuse, when the disk has been asked about @p path.
    void answerAfterLook(const ControlCall &call, const QString &path,
        const std::function<std::optional<QString>(const std::optional<FolderLook> &look)> &act);

    BrevokTargetApps &m_targets;
    StateStore &m_state;
};

} // namespace brevok
