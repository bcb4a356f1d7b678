// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "daemon/RequestDesk.h"

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

constexpr auto busName = "org.freedesktop.DBus"_L1;
constexpr auto busPath = "/org/freedesktop/DBus"_L1;
constexpr int openPerConnection = 8;
constexpr int openPerUser = 64;
constexpr int questionsPerUser = 4; ///< more than anybody can answer at once

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
    // One match for all who leave: one for each of them would have to be there before he goes.
    m_bus.connect(QString(busName), QString(busPath), QString(busName), u"NameOwnerChanged"_s,
        {QString(), QString(), u""_s}, u"sss"_s, this, SLOT(nameChanged(QString, QString, QString)));
}

RequestDesk::~RequestDesk() = default;

// In the background: a folder of somebody's may hang.
void RequestDesk::repair()
{
    QHash<QString, QList<WorkJournal::Entry>> folders;
    const QList<WorkJournal::Entry> entries = m_journal.entries();
    for (const WorkJournal::Entry &entry : entries) {
        folders[deletingLastPathComponent(entry.target)].append(entry);
    }
    for (auto folder = folders.cbegin(); folder != folders.cend(); ++folder) {
        ++m_unfinished;
        m_folders.enter(folder.key(), [this, name = folder.key(), left = folder.value()] {
            inBackgroundThen(
                this,
                [left, journal = m_journal] {
                    for (const WorkJournal::Entry &entry : left) {
                        repairInterruptedWork(journal, entry);
                    }
                    return true;
                },
                [this, name](bool) {
                    m_folders.leave(name);
                    restDone();
                });
        });
    }
}

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
    if (const auto known = m_callers.constFind(caller); known != m_callers.constEnd()) {
        open->caller = *known;
        open->identified = true;
        judge(open);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QString(busName), QString(busPath), QString(busName), u"GetConnectionCredentials"_s);
    call << caller;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, open, watcher] {
        const QDBusPendingReply<QVariantMap> reply = *watcher;
        watcher->deleteLater();
        if (!m_open.contains(open)) {
            return;
        }
        const QVariantMap credentials = reply.isError() ? QVariantMap() : reply.value();
        const QVariant user = credentials.value(u"UnixUserID"_s);
        if (!user.isValid()) {
            refuse(open, HelperAnswer::Refusal::Forbidden, u"the bus does not know who this is"_s);
            return;
        }
        open->caller = {user.toUInt(), qdbus_cast<QList<gid_t>>(credentials.value(u"UnixGroupIDs"_s))};
        open->identified = true;
        m_callers.insert(open->request->caller, open->caller);
        judge(open);
    });
}

// What is wrong with a request, whoever agrees to it; empty when nothing is.
QString RequestDesk::objection(const Open &open) const
{
    const HelperRequest &request = *open.request;
    QString own = objectionTo(request, open.caller.user);
    if (!own.isEmpty()) {
        return own;
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
        [&](const OpenPtr &other) { return other->identified && other->caller.user == open->caller.user; });
    // What callers who have left asked for may still be waiting.
    if (own > openPerUser || m_users.waiting(open->caller.user) > openPerUser) {
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
        [user](const OpenPtr &open) { return open->asks && !open->running && open->caller.user == user; });
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
    } else if (asks && questionsOf(open->caller.user) >= questionsPerUser) {
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

// The bytes are copied only when everybody has agreed, and not even read for somebody who would be refused
// anyway.
void RequestDesk::openSource(const OpenPtr &open, PolkitAuthority::Verdict verdict)
{
    inTurn(open, [this, open, verdict] {
        inBackgroundThen(
            this,
            [request = open->request, user = open->caller.user, isAsked = open->asks] {
                return brevok::openSource(*request, user, isAsked);
            },
            [this, open, verdict](const OpenedSource &opened) {
                m_users.leave(open->caller.user);
                if (!m_open.contains(open)) {
                    return;
                }
                open->source = opened.source;
                if (open->source == nullptr) {
                    settle(open, opened.refusal);
                } else {
                    sourceOpened(open, verdict);
                }
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

void RequestDesk::start(const OpenPtr &open)
{
    open->running = open->request->changesFiles();
    inTurn(open, [this, open] {
        if (open->source) {
            takeSource(open);
        } else {
            claimFolder(open);
        }
    });
}

// With one of the user's threads, which the work gives back at its end.
void RequestDesk::inTurn(const OpenPtr &open, const Task &work)
{
    m_users.enter(open->caller.user, [this, open, work] {
        if (m_open.contains(open)) {
            work();
        } else {
            m_users.leave(open->caller.user);
        }
    });
}

// Before the folder is claimed: a slow source keeps nobody else from the folder.
void RequestDesk::takeSource(const OpenPtr &open)
{
    inBackgroundThen(
        this,
        [source = open->source, folder = m_journal.folder()] { return brevok::takeSource(*source, folder); },
        [this, open](const std::optional<HelperAnswer> &refusal) {
            if (refusal) {
                settle(open, *refusal);
                m_users.leave(open->caller.user);
            } else {
                claimFolder(open);
            }
        });
}

void RequestDesk::claimFolder(const OpenPtr &open)
{
    if (open->running) {
        m_folders.enter(deletingLastPathComponent(open->request->target), [this, open] { run(open); });
    } else {
        run(open);
    }
}

void RequestDesk::run(const OpenPtr &open)
{
    inBackgroundThen(
        this,
        [request = open->request, caller = open->caller, source = std::exchange(open->source, {}),
            journal = m_journal] { return carryOut(*request, caller, source, journal); },
        [this, open](const WorkDone &done) { ran(open, done); });
}

// The caller has his answer first; the next one in the folder waits for the rest.
void RequestDesk::ran(const OpenPtr &open, const WorkDone &done)
{
    ++m_unfinished;
    settle(open, done.answer);
    if (!done.rest) {
        finished(open);
        return;
    }
    inBackgroundThen(
        this,
        [rest = done.rest] {
            rest();
            return true;
        },
        [this, open](bool) { finished(open); });
}

void RequestDesk::finished(const OpenPtr &open)
{
    if (open->running) {
        m_folders.leave(deletingLastPathComponent(open->request->target));
    }
    m_users.leave(open->caller.user);
    restDone();
}

void RequestDesk::restDone()
{
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
            open->identified ? QString::number(open->caller.user) : u"unknown"_s, request.caller,
            request.name(), quoted(request.target), answer.reason));
    }
    if (m_open.contains(open)) {
        open->done(answer);
    }
    forget(open);
}

void RequestDesk::nameChanged(const QString &name, const QString & /*before*/, const QString & /*now*/)
{
    m_callers.remove(name);
    const QSet<OpenPtr> all = m_open;
    for (const OpenPtr &open : all) {
        // What has begun is brought to its end.
        if (open->request->caller == name && !open->running) {
            m_authority.cancel(open->question);
            logLine(u"dropped user %1 (%2) %3 %4: the caller left"_s.arg(QString::number(open->caller.user),
                name, open->request->name(), quoted(open->request->target)));
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
