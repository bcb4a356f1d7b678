// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Tasks.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariant>

namespace brevok {

class StateStore;

/// The bus's name of the error with which a call is refused.
inline constexpr auto refusedError = "com.tolvane.brevok.Error.Refused";

/// One call over the session bus, which whoever gets it answers exactly once, now or later. Copies stand for
/// the same call. Main thread.
class ControlCall final {
public:
    /// @p answered is called when the answer is on its way.
    ControlCall(QDBusConnection bus, const QDBusMessage &message, Task answered);

    void answer() const;
    void answer(const QVariant &result) const;
    void answer(const QVariantList &results) const;
    /// Answers with the error "Refused", whose message is @p reason.
    void refuse(const QString &reason) const;

    /// Answers with @p failures, and with @p more, when what the call changed is stored; that it could not be
    /// is one more failure.
    void answerWhenStored(
        StateStore &state, const QStringList &failures, const QVariantList &more = {}) const;
    /// Answers when what the call changed is stored, or refuses with why that failed.
    void confirmWhenStored(StateStore &state) const;

private:
    void send(const QDBusMessage &answer) const;

    QDBusConnection m_bus;
    QDBusMessage m_message;
    Task m_answered;
};

} // namespace brevok
