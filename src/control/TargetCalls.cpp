// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/TargetCalls.h"

#include "platform/StateStore.h"
#include "targets/BrevokTargetApps.h"
#include "targets/TargetJudgement.h"

namespace brevok {

using namespace Qt::StringLiterals;

TargetCalls::TargetCalls(BrevokTargetApps &targets, StateStore &state, QObject *parent)
    : QObject(parent)
    , m_targets(targets)
    , m_state(state)
{
}

TargetCalls::~TargetCalls() = default;

void TargetCalls::add(
    const ControlCall &call, const QString &path, const QString &type, const QString &version)
{
    if (type != u"InDesign" && type != u"InCopy") {
        call.refuse(u"'%1' is not a type: use InDesign or InCopy."_s.arg(type));
        return;
    }
    answerAfterLook(call, path, [this, path, type, version](const std::optional<FolderLook> &look) {
        std::optional<QString> reason = whyNoTarget(path, version, look);
        if (!reason) {
            m_targets.insertTarget(path, type, version);
        }
        return reason;
    });
}

void TargetCalls::remove(const ControlCall &call, const QString &path)
{
    change(call, path, [this](const QString &known) { m_targets.removeTarget(known); });
}

void TargetCalls::setEnabled(const ControlCall &call, const QString &path, bool enabled)
{
    change(call, path, [this, enabled](const QString &known) { m_targets.setTarget(known, enabled); });
}

void TargetCalls::change(
    const ControlCall &call, const QString &path, const std::function<void(const QString &known)> &change)
{
    if (const std::optional<QString> known = m_targets.recordPath(path)) {
        change(*known);
        call.confirmWhenStored(m_state);
        return;
    }
    answerAfterLook(call, path, [this, path, change](const auto &look) -> std::optional<QString> {
        if (const std::optional<QString> known = m_targets.recordPath(path)) {
            change(*known);
            return std::nullopt;
        }
        return look ? u"There is no target '%1'."_s.arg(path) : doesNotAnswer(path);
    });
}

void TargetCalls::answerAfterLook(const ControlCall &call, const QString &path,
    const std::function<std::optional<QString>(const std::optional<FolderLook> &look)> &act)
{
    m_targets.lookAt(path, this, [this, act, call](const std::optional<FolderLook> &look) {
        if (const std::optional<QString> refused = act(look)) {
            call.refuse(*refused);
        } else {
            call.confirmWhenStored(m_state);
        }
    });
}

} // namespace brevok
