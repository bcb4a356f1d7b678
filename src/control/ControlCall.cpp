// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/ControlCall.h"

#include "platform/StateStore.h"

namespace brevok {

using namespace Qt::StringLiterals;

ControlCall::ControlCall(QDBusConnection bus, const QDBusMessage &message, Task answered)
    : m_bus(std::move(bus))
    , m_message(message)
    , m_answered(std::move(answered))
{
}

void ControlCall::answer() const
{
    send(m_message.createReply());
}

void ControlCall::answer(const QVariant &result) const
{
    send(m_message.createReply(result));
}

void ControlCall::answer(const QVariantList &results) const
{
    send(m_message.createReply(results));
}

void ControlCall::refuse(const QString &reason) const
{
    send(m_message.createErrorReply(QString::fromLatin1(refusedError), reason));
}

void ControlCall::answerWhenStored(
    StateStore &state, const QStringList &failures, const QVariantList &more) const
{
    state.commit({}, &state, [call = *this, failures, more](const auto &error) {
        const QStringList all = error ? failures + QStringList{error->description} : failures;
        call.answer(QVariantList{all} + more);
    });
}

void ControlCall::confirmWhenStored(StateStore &state) const
{
    state.commit({}, &state,
        [call = *this](const auto &error) { error ? call.refuse(error->description) : call.answer(); });
}

void ControlCall::send(const QDBusMessage &answer) const
{
    QDBusConnection(m_bus).send(answer);
    m_answered();
}

} // namespace brevok
