// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"

#include <QJsonDocument>
#include <QObject>
#include <QUrl>

namespace brevok {

class BrevokAlertQueue;
class BrevokSessionConnection;
class Connectivity;
class NetworkFactory;
class SelfUpdater;
class StateStore;
struct BrevokError;
struct ReplyVerdict;

/// The user's session with the web service: signs in and out, and keeps the session record across launches.
/// Main thread. The collaborators outlive it.
class BrevokSession final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokSession)

public:
    BrevokSession(StateStore &state, NetworkFactory &network, const Connectivity &connectivity,
        BrevokAlertQueue &alerts, SelfUpdater &updater, QObject *parent = nullptr);
    ~BrevokSession() override;

    /// The session of this process, for the outermost code.
    static BrevokSession *session();

    void signinWithID(const QString &email, const QString &password);
    void signout();

    /// The session id; null when signed out. Never to be logged.
    [[nodiscard]] QString sessionId() const;
    /// The e-mail address the user signed in with last; null when there is none.
    [[nodiscard]] QString orlecId() const;
    /// Whether any request is in flight.
    [[nodiscard]] bool isUpdating() const;
    /// Why the last attempt to sign in failed; empty when it did not, and from the next attempt on.
    [[nodiscard]] QString signinFailure() const { return m_signinFailure; }
    /// The record in several lines for the log, without the session id itself.
    [[nodiscard]] QString description() const;

    /// Whether the network can be reached; announces the status when it cannot.
    bool checkNetworkReachability();

    /// Builds and starts one request; actionFinished() tells its end. Nothing is sent while the network
    /// cannot be reached, which the user is told when @p verbose.
    /// @param status the session action (SessionAction)
    /// @param sessionID whether to send the session cookie
    /// @param machineIDs always false
    /// @param jsonData the JSON body; an empty one sends none
    void connectToURL(const QUrl &url, const QString &method, int status, bool sessionID, bool machineIDs,
        const QJsonObject &jsonData, bool verbose);

Q_SIGNALS:
    /// Around every change of what sessionId(), orlecId() and isUpdating() tell, and when the network was
    /// found unreachable.
    void statusWillChange();
    void statusChanged();

    /// The end of a request, once for each connectToURL(): @p ok when the service did what was asked for,
    /// else @p message says why not. Emitted before an alert about it is shown, and later than the call when
    /// nothing could be sent.
    void actionFinished(int action, bool ok, const QString &message);

private:
    void load();
    void save();
    void stateChanged();
    void add(BrevokSessionConnection *connection);
    void remove(BrevokSessionConnection *connection);
    void setSessionId(const QString &sessionId);

    void finishLoading(BrevokSessionConnection *connection);
    void failWithError(BrevokSessionConnection *connection, const BrevokError &error);
    bool demandsUpdate(BrevokSessionConnection *connection);
    void handleUnexpectedData(const BrevokSessionConnection &connection);
    ReplyVerdict handleErrorCode(const BrevokSessionConnection &connection, const Record &reply);
    void handleReply(int action, const Record &reply);
    void reportEnd(int action, const ReplyVerdict &verdict, const Record &reply);
    void tellEnd(int action, bool ok, const QString &message);

    StateStore &m_state;
    NetworkFactory &m_network;
    const Connectivity &m_connectivity;
    BrevokAlertQueue &m_alerts;
    SelfUpdater &m_updater;
    Record m_session;
    Record m_stored; ///< what the store holds of it
    QString m_signinFailure;
    BrevokSessionConnection *m_connection = nullptr; ///< the most recent request, while it is in flight
    QList<BrevokSessionConnection *> m_connections;
};

} // namespace brevok
