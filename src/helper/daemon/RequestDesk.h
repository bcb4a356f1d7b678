// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "daemon/HelperRequest.h"
#include "daemon/PolkitAuthority.h"
#include "daemon/RequestWork.h"
#include "daemon/Turns.h"

#include <QSet>

namespace brevok {

/// Receives the requests, and trusts no caller. For each it finds out who makes it (the bus says), whether
/// anybody may have this (the paths, the user id, the permissions) and whether he may (polkit); then the
/// request is carried out exactly as it was made. A request waits for another only while that one works in
/// the same folder, or while the same user's requests have all the threads that one user gets. When a caller
/// leaves, those of his requests that have not begun are dropped. Main thread; file work runs in the
/// background.
class RequestDesk final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RequestDesk)

public:
    using Done = std::function<void(const HelperAnswer &)>;

    /// @p stateFolder exists and is this process's alone.
    RequestDesk(QDBusConnection bus, const QString &stateFolder, QObject *parent = nullptr);
    ~RequestDesk() override;

    /// Ends what a killed process left; in those folders nothing else is done until then. Before the first
    /// request.
    void repair();
    /// @p done is called once, later; not at all when the caller has left by then.
    void take(const HelperRequestPtr &request, Done done);
    [[nodiscard]] bool isIdle() const { return m_open.isEmpty() && m_unfinished == 0; }

Q_SIGNALS:
    void becameIdle();

private Q_SLOTS:
    void nameChanged(const QString &name, const QString &before, const QString &now);

private:
    /// A request on its way.
    struct Open {
        HelperRequestPtr request;
        Done done;
        UserRights caller{};
        bool identified = false;
        QString question{}; ///< at polkit
        bool asks = false; ///< a person is asked, or will be
        SourcePtr source{};
        bool running = false; ///< files are being changed, or are next: it is brought to its end
    };
    using OpenPtr = std::shared_ptr<Open>;

    void identify(const OpenPtr &open);
    void judge(const OpenPtr &open);
    [[nodiscard]] QString objection(const Open &open) const;
    [[nodiscard]] qsizetype questionsOf(quint32 user) const;
    void authorize(const OpenPtr &open, PolkitAuthority::Interaction interaction);
    void authorized(const OpenPtr &open, PolkitAuthority::Verdict verdict);
    void openSource(const OpenPtr &open, PolkitAuthority::Verdict verdict);
    void sourceOpened(const OpenPtr &open, PolkitAuthority::Verdict verdict);
    void start(const OpenPtr &open);
    void inTurn(const OpenPtr &open, const Task &work);
    void takeSource(const OpenPtr &open);
    void claimFolder(const OpenPtr &open);
    void run(const OpenPtr &open);
    void ran(const OpenPtr &open, const WorkDone &done);
    void finished(const OpenPtr &open);
    void restDone();
    void refuse(const OpenPtr &open, HelperAnswer::Refusal refusal, const QString &reason);
    void settle(const OpenPtr &open, const HelperAnswer &answer);
    void forget(const OpenPtr &open);

    QDBusConnection m_bus;
    WorkJournal m_journal;
    PolkitAuthority m_authority;
    QHash<QString, UserRights> m_callers; ///< what the bus said of callers who are still there
    QSet<OpenPtr> m_open;
    int m_unfinished = 0; ///< answered requests whose rest is being done
    /// A user has a part of the threads: what he makes hang, on a file system of his own, keeps nobody else
    /// waiting.
    Turns<quint32> m_users{4};
    Turns<QString> m_folders{1}; ///< work in one folder goes on one after the other
};

} // namespace brevok
