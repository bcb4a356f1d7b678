// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/BrevokAlertQueue.h"
#include "foundation/Log.h"
#include "service/BrevokSession.h"
#include "service/Connectivity.h"
#include "service/ReplyDecoding.h"
#include "ServiceStage.h"
#include "support/FakeRouteLookup.h"
#include "support/IdleUpdater.h"
#include "support/LogCapture.h"
#include "support/ScratchStateStore.h"
#include "support/ScriptedAlertPresenter.h"

namespace brevok::testing {

inline const QString signinPath = QStringLiteral("/api/machine/signin");
inline const QString signoutPath = QStringLiteral("/api/machine/signout");
inline const QString dataKey = QStringLiteral("OrlecSessionData");
inline const QString password = QStringLiteral(u"pass wörd\"");

inline constexpr int otherAction = 7;

class CountingUpdater final : public IdleUpdater {
public:
    int checks = 0;
    bool can = true;
    [[nodiscard]] bool canUpdate() const override { return can; }
    void checkForUpdatesInBackground() override { ++checks; }
};

/// A session with all that it needs and says to the log, one at a time, against a server that the test
/// scripts.
struct SessionStage : ServiceStage {
    explicit SessionStage(int timeoutMs = 20000, const Record &stored = {},
        const TestIdentity &identity = TestCertificates::shared().valid())
        : ServiceStage(identity, timeoutMs)
        , connectivity(network, routes)
        , queue(presenter, panel)
    {
        if (!stored.isEmpty()) {
            state.commit({{dataKey, QString(), stored}});
        }
        session = std::make_unique<BrevokSession>(state, network, connectivity, queue, updater);
        QObject::connect(session.get(), &BrevokSession::actionFinished, session.get(),
            [this](int action, bool ok, const QString &message) {
                ++ended;
                lastAction = action;
                succeeded = ok;
                told = message;
            });
        QObject::connect(
            session.get(), &BrevokSession::statusWillChange, session.get(), [this] { ++willChange; });
        QObject::connect(session.get(), &BrevokSession::statusChanged, session.get(), [this] { ++changed; });
    }

    ~SessionStage() { setLogLevel(0); }
    Q_DISABLE_COPY_MOVE(SessionStage)

    static Record signedIn()
    {
        return {{QStringLiteral("SessionId"), QStringLiteral("held-id")},
            {QStringLiteral("orlecId"), QStringLiteral("ada@example.com")}, {QStringLiteral("later"), 7}};
    }
    [[nodiscard]] Record stored() { return state.entries(dataKey).value(QString()); }
    void request(int action)
    {
        if (action == SessionSignin) {
            session->signinWithID(QStringLiteral("ada@example.com"), password);
        } else if (action == SessionSignout) {
            session->signout();
        } else {
            session->connectToURL(
                server.url(QStringLiteral("/other")), QStringLiteral("GET"), action, true, false, {}, false);
        }
    }
    [[nodiscard]] QString shownText(qsizetype index) const
    {
        return index < presenter.shown.size()
            ? presenter.shown.at(index).messageText.value_or(QStringLiteral("-")) + u'|'
                + presenter.shown.at(index).informativeText.value_or(QString())
            : QString();
    }

    LogCapture log;
    ScratchStateStore scratch;
    StateStore &state = scratch.store;
    FakeRouteLookup routes;
    ScriptedAlertPresenter presenter;
    RecordingPanel panel;
    Connectivity connectivity;
    BrevokAlertQueue queue;
    CountingUpdater updater;
    std::unique_ptr<BrevokSession> session;
    int ended = 0;
    int lastAction = -1;
    bool succeeded = false;
    QString told;
    int willChange = 0;
    int changed = 0;
};

} // namespace brevok::testing
