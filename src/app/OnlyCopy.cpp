// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/OnlyCopy.h"

#include "foundation/Log.h"
#include "install/RunningTargets.h"
#include "platform/PropertyLists.h"
#include "platform/RunningApplications.h"
#include "platform/SessionBus.h"

#include <chrono>
#include <utility>

namespace brevok {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

OnlyCopy::OnlyCopy(const Collaborators &with, QObject *parent)
    : QObject(parent)
    , m_with(with)
    , m_files(lockOfFiles(with.folders))
    , m_session(lockOfSession())
{
    connect(&m_files, &CopyLock::holderEnded, this, &OnlyCopy::begin);
    connect(&m_session, &CopyLock::holderEnded, this, &OnlyCopy::begin);
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, [this] { end(false); });
    connect(&with.bus, &SessionBus::nameAcquired, this, [this] { end(true); });
}

OnlyCopy::~OnlyCopy() = default;

void OnlyCopy::decide(std::function<void(bool)> decided)
{
    m_decided = std::move(decided);
    begin();
}

void OnlyCopy::begin()
{
    if (!m_decided) {
        return;
    }
    switch (m_files.take(m_with.headless)) {
    case CopyLock::State::Ours:
        takeName();
        return;
    case CopyLock::State::Theirs:
        giveWayTo(m_files);
        return;
    case CopyLock::State::Unusable:
        takeName();
        return;
    }
}

void OnlyCopy::takeName()
{
    switch (m_with.bus.takeName(m_with.bundle.identifier())) {
    case SessionBus::Name::Ours:
        end(true);
        return;
    case SessionBus::Name::Theirs:
        // With the lock ours, its owner works on other files, or the bus has yet to notice its end.
        m_patience.start(1s);
        return;
    case SessionBus::Name::NoBus:
        decideWithoutBus();
        return;
    }
}

void OnlyCopy::decideWithoutBus()
{
    switch (m_session.take(m_with.headless)) {
    case CopyLock::State::Ours:
        end(true);
        return;
    case CopyLock::State::Theirs:
        giveWayTo(m_session);
        return;
    case CopyLock::State::Unusable:
        end(!isAnyAppRunning(m_with.applications.list(), m_with.bundle.displayNames()));
        return;
    }
}

void OnlyCopy::giveWayTo(CopyLock &lock)
{
    if (m_with.forCallers && lock.awaitHolder()) {
        m_patience.start(30s);
        return;
    }
    if (m_with.headless || !lock.askHolderToLeave()) {
        end(false);
        return;
    }
    logLine(u"A copy without windows runs; this one goes on when it has ended."_s);
}

void OnlyCopy::end(bool stays)
{
    m_patience.stop();
    if (const auto decided = std::exchange(m_decided, {})) {
        if (!stays) {
            m_with.bus.leaveName();
        }
        decided(stays);
    }
}

} // namespace brevok
