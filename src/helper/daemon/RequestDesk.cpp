// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "daemon/RequestDesk.h"

#include "daemon/TargetPath.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/Tasks.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int openPerConnection = 8;
constexpr int openPerUser = 64;
constexpr int questionsPerUser = 4; ///< more than anybody can answer at once
constexpr quint32 plainPermissions = 0777;

/// A caller's text as one harmless piece of a log line.
QString quoted(const QString &text)
{
    constexpr qsizetype longest = 300;
    QString result = text.left(longest);
    for (QChar &character : result) {
        if (!character.isPrint()) {
            character = u'?';
        }
    }
    return u'"' + result + (text.size() > longest ? u"...\""_s : u"\""_s);
}

} // namespace

RequestDesk::RequestDesk(QDBusConnection bus, const QString &stateFolder, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_journal(stateFolder)
    , m_authority(m_bus)
{
    m_callers.setConnection(m_bus);
    m_callers.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_callers, &QDBusServiceWatcher::serviceUnregistered, this, &RequestDesk::callerLeft);
}

RequestDesk::~RequestDesk() = default;

void RequestDesk::take(const HelperRequestPtr &request, Done done)
{
    const auto open = std::make_shared<Open>(Open{.request = request, .done = std::move(done)});
    m_open.insert(open);
    const auto own = std::count_if(m_open.cbegin(), m_open.cend(),
        [&](const OpenPtr &other) { return other->request->caller == request->caller; });
    if (own > openPerConnection) {
        refuse(open, HelperAnswer::Refusal::TooMuch, u"too many requests of this connection are open"_s);
        return;
    }
    identify(open);
}

void RequestDesk::identify(const OpenPtr &open)
{
    const QString &caller = open->request->caller;
    if (const auto known = m_users.constFind(caller); known != m_users.constEnd()) {
        open->user = *known;
        open->identified = true;
        judge(open);
        return;
    }
    m_callers.addWatchedService(caller);
    QDBusMessage call = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
        u"org.freedesktop.DBus"_s, u"GetConnectionCredentials"_s);
    call << caller;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, open, watcher] {
        const QDBusPendingReply<QVariantMap> reply = *watcher;
        watcher->deleteLater();
        if (!m_open.contains(open)) {
            return;
        }
        const QVariant user = reply.isError() ? QVariant() : reply.value().value(u"UnixUserID"_s);
        if (!user.isValid()) {
            refuse(open, HelperAnswer::Refusal::Forbidden, u"the bus does not know who this is"_s);
            return;
        }
        open->user = user.toUInt();
        open->identified = true;
        m_users.insert(open->request->caller, open->user);
        judge(open);
    });
}

/// What is wrong with a request whoever agrees to it; empty when nothing is.
QString RequestDesk::objection(const Open &open) const
{
    const HelperRequest &request = *open.request;
    if (targetPath(request.target) != request.target) {
        return u"the path cannot belong to an install target"_s;
    }
    if (request.operation == HelperRequest::Operation::Install
        && plainPath(request.source) != request.source) {
        return u"the source is no absolute path"_s;
    }
    if (request.namesUser() && request.user != open.user) {
        return u"the user id %1 is not the caller's own"_s.arg(request.user);
    }
    if ((request.permissions & ~plainPermissions) != 0) {
        return u"the permissions %1 are more than permissions"_s.arg(request.permissions, 0, 8);
    }
    const bool twice =
        request.changesFiles() && std::any_of(m_open.cbegin(), m_open.cend(), [&](const OpenPtr &other) {
            return other.get() != &open && other->request->caller == request.caller
                && other->request->changesFiles() && other->request->target == request.target;
        });
    return twice ? u"a request of this caller for the same path is open"_s : QString();
}

void RequestDesk::judge(const OpenPtr &open)
{
    const QString reason = objection(*open);
    if (!reason.isEmpty()) {
        refuse(open, HelperAnswer::Refusal::Forbidden, reason);
        return;
    }
    const auto own = std::count_if(m_open.cbegin(), m_open.cend(),
        [&](const OpenPtr &other) { return other->identified && other->user == open->user; });
    if (own > openPerUser) {
        refuse(open, HelperAnswer::Refusal::TooMuch, u"too many requests of this user are open"_s);
        return;
    }
    if (open->request->changesFiles()) {
        authorize(open, PolkitAuthority::Interaction::None);
    } else {
        start(open);
    }
}

qsizetype RequestDesk::questionsOf(quint32 user) const
{
    return std::count_if(m_open.cbegin(), m_open.cend(),
        [user](const OpenPtr &open) { return open->asks && !open->running && open->user == user; });
}

void RequestDesk::authorize(const OpenPtr &open, PolkitAuthority::Interaction interaction)
{
    const HelperRequest &request = *open->request;
    open->question = m_authority.check(request.caller, request.action(),
        {{u"polkit.gettext_domain"_s, u"tolvane-brevok"_s}, {u"target"_s, request.target}}, interaction,
        [this, open](PolkitAuthority::Verdict verdict) {
            open->question.clear();
            authorized(open, verdict);
        });
}

void RequestDesk::authorized(const OpenPtr &open, PolkitAuthority::Verdict verdict)
{
    using Verdict = PolkitAuthority::Verdict;
    const bool asks = verdict == Verdict::Question && open->request->mayAsk && !open->asks;
    if (verdict == Verdict::Unreachable) {
        refuse(open, HelperAnswer::Refusal::NotAuthorized, u"polkit does not answer"_s);
    } else if (verdict != Verdict::Yes && !asks) {
        refuse(open,
            verdict == Verdict::Question && !open->request->mayAsk ? HelperAnswer::Refusal::NeedsQuestion
                                                                   : HelperAnswer::Refusal::NotAuthorized,
            u"not authorized"_s);
    } else if (asks && questionsOf(open->user) >= questionsPerUser) {
        refuse(open, HelperAnswer::Refusal::TooMuch, u"too many questions to this user are open"_s);
    } else if (open->request->operation == HelperRequest::Operation::Install && open->source == nullptr) {
        open->asks = asks;
        openSource(open, verdict);
    } else if (asks) {
        open->asks = true;
        authorize(open, PolkitAuthority::Interaction::Allowed);
    } else {
        start(open);
    }
}

/// The bytes are copied when everybody has agreed, and not even read for somebody who would be refused
/// anyway.
void RequestDesk::openSource(const OpenPtr &open, PolkitAuthority::Verdict verdict)
{
    inBackground([this, open, verdict, user = open->user, isAsked = open->asks] {
        auto answer = std::make_shared<HelperAnswer>();
        auto source = brevok::openSource(*open->request, user, isAsked, answer.get());
        onMain(this, [this, open, verdict, source, answer] {
            if (!m_open.contains(open)) {
                return;
            }
            if (source == nullptr) {
                settle(open, *answer);
                return;
            }
            open->source = source;
            sourceOpened(open, verdict);
        });
    });
}

void RequestDesk::sourceOpened(const OpenPtr &open, PolkitAuthority::Verdict verdict)
{
    if (verdict == PolkitAuthority::Verdict::Yes) {
        start(open);
    } else {
        authorize(open, PolkitAuthority::Interaction::Allowed);
    }
}

/// Work in one folder goes on one after the other.
void RequestDesk::start(const OpenPtr &open)
{
    open->running = open->request->changesFiles();
    if (!open->running) {
        run(open);
        return;
    }
    const QString folder = deletingLastPathComponent(open->request->target);
    const auto busy = m_folders.find(folder);
    if (busy != m_folders.end()) {
        busy->append(open);
        return;
    }
    m_folders.insert(folder, {});
    run(open);
}

void RequestDesk::run(const OpenPtr &open)
{
    inBackground([this, open, user = open->user, source = std::exchange(open->source, {})] {
        const WorkDone done = carryOut(*open->request, user, source, m_journal);
        onMain(this, [this, open, done] { ran(open, done); });
    });
}

// The caller has his answer first; the next one in the folder waits for the rest.
void RequestDesk::ran(const OpenPtr &open, const WorkDone &done)
{
    const QString folder = open->running ? deletingLastPathComponent(open->request->target) : QString();
    ++m_unfinished;
    settle(open, done.answer);
    inBackground([this, folder, rest = done.rest] {
        if (rest) {
            rest();
        }
        onMain(this, [this, folder] { finished(folder); });
    });
}

void RequestDesk::finished(const QString &folder)
{
    if (const auto waiting = m_folders.find(folder); waiting != m_folders.end()) {
        if (waiting->isEmpty()) {
            m_folders.erase(waiting);
        } else {
            run(waiting->takeFirst());
        }
    }
    if (--m_unfinished == 0 && m_open.isEmpty()) {
        Q_EMIT becameIdle();
    }
}

void RequestDesk::refuse(const OpenPtr &open, HelperAnswer::Refusal refusal, const QString &reason)
{
    HelperAnswer answer;
    answer.refusal = refusal;
    answer.reason = reason;
    settle(open, answer);
}

void RequestDesk::settle(const OpenPtr &open, const HelperAnswer &answer)
{
    const HelperRequest &request = *open->request;
    if (answer.refusal != HelperAnswer::Refusal::None) {
        logLine(u"refused user %1 (%2) %3 %4: %5"_s.arg(
            open->identified ? QString::number(open->user) : u"unknown"_s, request.caller, request.name(),
            quoted(request.target), answer.reason));
    }
    if (m_open.contains(open)) {
        open->done(answer);
    }
    forget(open);
}

void RequestDesk::callerLeft(const QString &caller)
{
    m_callers.removeWatchedService(caller);
    m_users.remove(caller);
    const QSet<OpenPtr> all = m_open;
    for (const OpenPtr &open : all) {
        // What has begun is brought to its end.
        if (open->request->caller == caller && !open->running) {
            m_authority.cancel(open->question);
            logLine(u"dropped user %1 (%2) %3 %4: the caller left"_s.arg(
                QString::number(open->user), caller, open->request->name(), quoted(open->request->target)));
            forget(open);
        }
    }
}

void RequestDesk::forget(const OpenPtr &open)
{
    if (m_open.remove(open) && m_open.isEmpty()) {
        Q_EMIT becameIdle();
    }
}

} // namespace brevok
