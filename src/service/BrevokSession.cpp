// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/BrevokSession.h"

#include "alerts/BrevokAlertQueue.h"
#include "foundation/Log.h"
#include "foundation/Secrets.h"
#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"
#include "platform/SelfUpdater.h"
#include "platform/StateStore.h"
#include "service/BrevokSessionConnection.h"
#include "service/Connectivity.h"
#include "service/NetworkFactory.h"
#include "service/ReplyDecoding.h"
#include "service/TransportErrors.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

BrevokSession *sharedSession = nullptr;

const QString dataKey = u"OrlecSessionData"_s;
const QString versionKey = u"OrlecSessionVersion"_s;
constexpr double recordVersion = 1.2;

const QString sessionIdKey = u"SessionId"_s;
const QString orlecIdKey = u"orlecId"_s;

constexpr int retries = 2;
constexpr qint64 longestReply = 8LL * 1024 * 1024; // they are a few hundred bytes

// An id that could not travel as a cookie is none.
QString usableId(const QJsonValue &value)
{
    const QString id = nonEmptyString(value);
    return isCookieValue(id) ? id : QString();
}

// What the service has to say, as the user may see it.
QString errorMessageOf(const Record &reply)
{
    constexpr qsizetype longest = 1000;
    return severalLines(
        withoutSecrets(nonEmptyString(reply.value("ErrorMessage"_L1)).left(4 * longest)), longest);
}

} // namespace

BrevokSession::BrevokSession(StateStore &state, NetworkFactory &network, const Connectivity &connectivity,
    BrevokAlertQueue &alerts, SelfUpdater &updater, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_network(network)
    , m_connectivity(connectivity)
    , m_alerts(alerts)
    , m_updater(updater)
{
    if (sharedSession == nullptr) {
        sharedSession = this;
    }
    connect(&state, &StateStore::becameReadable, this, [this] {
        load();
        stateChanged();
    });
    connect(&state, &StateStore::everythingWanted, this, [this] {
        m_stored = {};
        save();
        m_state.setValue(versionKey, recordVersion);
    });
    load();
}

BrevokSession::~BrevokSession()
{
    if (sharedSession == this) {
        sharedSession = nullptr;
    }
}

BrevokSession *BrevokSession::session()
{
    return sharedSession;
}

void BrevokSession::load()
{
    m_session = m_stored = m_state.entries(dataKey).value(QString());
    keepSecret(sessionId());
    if (m_state.value(versionKey) != QJsonValue(recordVersion)) {
        m_state.setValue(versionKey, recordVersion);
    }
}

void BrevokSession::save()
{
    if (m_session != m_stored) {
        m_stored = m_session;
        m_state.commit({{dataKey, QString(), m_session}});
    }
}

QString BrevokSession::sessionId() const
{
    return usableId(m_session.value(sessionIdKey));
}

QString BrevokSession::orlecId() const
{
    return nonEmptyString(m_session.value(orlecIdKey));
}

bool BrevokSession::isUpdating() const
{
    return !m_connections.isEmpty();
}

QString BrevokSession::description() const
{
    return u"Session:\n  orlecId:   %1\n  SessionId: %2\n  updating:  %3"_s.arg(orDash(orlecId()),
        sessionId().isEmpty() ? u"-"_s : u"(not logged)"_s, isUpdating() ? u"YES"_s : u"NO"_s);
}

void BrevokSession::setSessionId(const QString &sessionId)
{
    if (sessionId.isEmpty()) {
        m_session.remove(sessionIdKey);
    } else {
        keepSecret(sessionId);
        m_session.insert(sessionIdKey, sessionId);
    }
}

// The record is written once the last outstanding reply has been handled, never in between.
void BrevokSession::stateChanged()
{
    if (m_connections.isEmpty()) {
        save();
    }
    Q_EMIT statusWillChange();
    Q_EMIT statusChanged();
}

bool BrevokSession::checkNetworkReachability()
{
    const bool reachable = m_connectivity.checkNetworkReachability();
    if (!reachable) {
        stateChanged();
    }
    return reachable;
}

void BrevokSession::signinWithID(const QString &email, const QString &password)
{
    keepSecret(password);
    m_signinFailure.clear();
    m_session.insert(orlecIdKey, email);
    connectToURL(m_network.configuration().url(u"/api/machine/signin"_s), u"POST"_s, SessionSignin, false,
        false, {{u"email"_s, email}, {u"password"_s, password}}, true);
}

void BrevokSession::signout()
{
    connectToURL(m_network.configuration().url(u"/api/machine/signout"_s), u"POST"_s, SessionSignout, true,
        false, {}, true);
}

void BrevokSession::connectToURL(const QUrl &url, const QString &method, int status, bool sessionID,
    bool /*machineIDs*/, const QJsonObject &jsonData, bool verbose)
{
    if (!checkNetworkReachability()) {
        const QString text = Texts::tr("Network is unreachable. Is your internet connection down?");
        onMain(this, [this, status, text] { tellEnd(status, false, text); });
        if (verbose) {
            m_alerts.tell(Texts::tr("Connection Error"), text, {Texts::tr("OK")});
        }
        return;
    }
    SessionRequest request = m_network.request(url);
    request.method = method.toLatin1();
    request.headers = {{"Content-Type", "application/json"}, {"Accept", "application/json"},
        {"Accept-Encoding", "gzip"}, {versionHeader, versionHeaderValue}};
    request.cookies = CookieRule::Take;
    request.logsChallenges = true;
    request.limits.bodyBytes = longestReply;
    if (sessionID && !sessionId().isEmpty()) {
        request.headers.append({"Cookie", "SessionId=" + sessionId().toUtf8()});
        request.cookies = CookieRule::TakeAndSend;
    }
    if (!jsonData.isEmpty()) {
        request.body = QJsonDocument(jsonData).toJson(QJsonDocument::Compact);
    }
    add(new BrevokSessionConnection(m_network, request, status, this));
    stateChanged();
}

void BrevokSession::add(BrevokSessionConnection *connection)
{
    m_connection = connection;
    m_connections.append(connection);
    connect(connection, &BrevokSessionConnection::didFinishLoading, this, &BrevokSession::finishLoading);
    connect(connection, &BrevokSessionConnection::didFailWithError, this, &BrevokSession::failWithError);
}

void BrevokSession::remove(BrevokSessionConnection *connection)
{
    m_connections.removeOne(connection);
    if (m_connection == connection) {
        m_connection = nullptr;
    }
    connection->deleteLater();
    stateChanged();
}

void BrevokSession::finishLoading(BrevokSessionConnection *connection)
{
    const int action = connection->status;
    if (demandsUpdate(connection)) {
        return;
    }
    const std::optional<QJsonDocument> document = jsonObjectFromData(connection->responseData,
        connection->responseHTTP ? connection->responseHTTP->status : 0, &connection->responseError);
    if (!document) {
        handleUnexpectedData(*connection);
        const QString message = connection->responseError->description;
        remove(connection);
        tellEnd(action, false, message);
        return;
    }
    const Record reply = document->object(); // a list has no fields, and no error code
    const ReplyVerdict verdict = handleErrorCode(*connection, reply);
    handleReply(action, reply);
    remove(connection);
    reportEnd(action, verdict, reply);
    if (verdict.message.isNull()) {
        return;
    }
    if (verdict.quiet) {
        logLine(u"Session action: %1 failed With Error Message: %2"_s.arg(
            sessionActionName(action), verdict.message));
    } else {
        m_alerts.tell(Texts::tr("Authentication Error"), verdict.message, {Texts::tr("OK")});
    }
}

// The service answers only newer versions of the program: its body is not looked at.
bool BrevokSession::demandsUpdate(BrevokSessionConnection *connection)
{
    const QByteArray code =
        connection->responseHTTP ? connection->responseHTTP->header(responseCodeHeader) : QByteArray();
    if (leadingInteger(QString::fromLatin1(code)) != 1) {
        return false;
    }
    const QString title = Texts::tr("There is critical update of Tolvane Brevok application.");
    m_updater.checkForUpdatesInBackground();
    tellEnd(connection->status, false, title);
    const QString elsewhere = Texts::tr("This copy cannot update itself. You can get the new version at %1.")
                                  .arg(addressText(m_network.configuration().baseUrl));
    m_alerts.tell(title, m_updater.canUpdate() ? QString() : elsewhere, {Texts::tr("OK")});
    remove(connection);
    return true;
}

void BrevokSession::handleUnexpectedData(const BrevokSessionConnection &connection)
{
    logLine(u"Session action %1 failed with error. Received %2 bytes of unexpected data"_s
                .arg(sessionActionName(connection.status))
                .arg(connection.responseData.size()));
    logLine(u"Response string: "_s + excerpt(connection.responseData));
    if (connection.status == SessionSignin || connection.status == SessionSignout) {
        setSessionId({});
    }
}

ReplyVerdict BrevokSession::handleErrorCode(const BrevokSessionConnection &connection, const Record &reply)
{
    const qint64 code = integerValue(reply.value("ErrorCode"_L1));
    const QString errorMessage = errorMessageOf(reply);
    ReplyVerdict verdict = verdictFor(code, connection.status, !sessionId().isEmpty(), errorMessage);
    if (verdict.dropsSessionId) {
        setSessionId({});
    }
    if (verdict.sendsSignout) {
        signout();
    }
    if (verdict.logged) {
        logLine(u"Server Error! connection to: \"%1\" failed: %2 with message: %3"_s.arg(
            addressText(
                connection.responseHTTP ? connection.responseHTTP->url : connection.originalRequest2.url),
            QString::number(code), orDash(oneLine(errorMessage))));
    }
    return verdict;
}

// Also after an error: the reply then has no session id, and what was held is cleared.
void BrevokSession::handleReply(int action, const Record &reply)
{
    if (action == SessionSignin) {
        setSessionId(usableId(reply.value(sessionIdKey)));
    } else if (action == SessionSignout) {
        setSessionId({});
    }
}

void BrevokSession::reportEnd(int action, const ReplyVerdict &verdict, const Record &reply)
{
    if (!verdict.succeeded) {
        const QString told = verdict.message.isNull() ? errorMessageOf(reply) : verdict.message;
        tellEnd(action, false, told);
    } else if (action == SessionSignin && sessionId().isEmpty()) {
        tellEnd(action, false, Texts::tr("Unexpected server response."));
    } else {
        tellEnd(action, true, {});
    }
}

void BrevokSession::tellEnd(int action, bool ok, const QString &message)
{
    if (action == SessionSignin) {
        m_signinFailure = ok ? QString() : message;
    }
    Q_EMIT actionFinished(action, ok, ok ? QString() : orDash(message));
}

void BrevokSession::failWithError(BrevokSessionConnection *connection, const BrevokError &error)
{
    logLine(u"Session connection to: \"%1\" failed!"_s.arg(addressText(connection->originalRequest2.url)));
    if (error.code == timedOutCode && connection->errorCount < retries) {
        logError(error);
        auto *again =
            new BrevokSessionConnection(m_network, connection->originalRequest2, connection->status, this);
        again->errorCount = connection->errorCount + 1;
        add(again);
    } else {
        tellEnd(connection->status, false, error.description);
        m_alerts.show(BrevokAlert::alertWithError(m_alerts.presenter(), error), this);
    }
    remove(connection);
}

} // namespace brevok
