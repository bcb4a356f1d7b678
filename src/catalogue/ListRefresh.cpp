// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/ListRefresh.h"

#include "alerts/BrevokAlertQueue.h"
#include "foundation/BrevokError.h"
#include "foundation/Log.h"
#include "foundation/Secrets.h"
#include "foundation/Texts.h"
#include "platform/StateStore.h"
#include "service/ReplyDecoding.h"
#include "service/ServiceClient.h"

#include <QJsonDocument>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int afterReplySeconds = 3600;
constexpr int afterErrorSeconds = 60;
constexpr double warnAfterSeconds = 604800;
constexpr double secondsOfDay = 86400;

} // namespace

ListRefresh::ListRefresh(Wording wording, StateStore &state, ServiceClient &service, BrevokAlertQueue &alerts,
    ListHandler takeList, QObject *parent)
    : QObject(parent)
    , m_wording(std::move(wording))
    , m_state(state)
    , m_service(service)
    , m_alerts(alerts)
    , m_takeList(std::move(takeList))
    , m_lastUpdate(state.date(m_wording.dateKey))
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_timer, &QTimer::timeout, this, &ListRefresh::due);
}

ListRefresh::~ListRefresh() = default;

void ListRefresh::check(const CheckHandler &ended)
{
    const auto end = [this, ended](bool ok) {
        Q_EMIT finished(ok);
        if (ended) {
            ended(ok);
        }
    };
    if (!m_state.isReadable() || !m_service.checkNetworkReachability()) {
        end(false);
        return;
    }
    m_service.getList(m_wording.path, this, [this, end](const ServiceReply &reply) { end(handle(reply)); });
}

bool ListRefresh::handle(const ServiceReply &reply)
{
    if (reply.error) {
        handleTransportError(reply);
        return false;
    }
    if (reply.status != 200) {
        // The cycle ends here: it begins again with the next check that somebody asks for.
        m_timer.stop();
        logLine(u"%1%2 - %3"_s.arg(m_wording.failedWithResponse)
                    .arg(reply.status, 3, 10, QLatin1Char('0'))
                    .arg(localizedStringForStatusCode(reply.status)));
        return false;
    }
    // Before the body is looked at, so that a bad one does not stop the cycle.
    schedule(afterReplySeconds);
    return handleContent(reply);
}

void ListRefresh::handleTransportError(const ServiceReply &reply)
{
    logLine(m_wording.failedWithError);
    // Negative for a date in the past, so this warns of one that lies more than a week ahead.
    if (secondsUntilLastUpdate() > warnAfterSeconds) {
        showAlert();
    } else {
        logError(reply.error);
    }
    schedule(afterErrorSeconds);
}

bool ListRefresh::handleContent(const ServiceReply &reply)
{
    QJsonParseError problem;
    QJsonDocument document = QJsonDocument::fromJson(reply.body, &problem);
    if (document.isArray()) {
        // The only reference is handed over: what is kept of the elements then needs no copy.
        QJsonArray list = document.array();
        document = {};
        if (mayHoldHalfCharacters(reply.body)) {
            list = wellFormed(list).toArray();
        }
        m_takeList(std::move(list));
        m_lastUpdate = QDateTime::currentDateTimeUtc();
        m_state.setDate(m_wording.dateKey, m_lastUpdate);
        return true;
    }
    showAlert();
    logLine(m_wording.failedWithContent);
    logLine(u"Received %1 bytes of data"_s.arg(reply.body.size()));
    logLine(u"Response string: "_s + excerpt(reply.body));
    if (problem.error != QJsonParseError::NoError) {
        logError(BrevokError{.domain = QString::fromLatin1(connectionErrorDomain),
            .code = problem.error,
            .description = problem.errorString()});
    }
    return false;
}

void ListRefresh::schedule(int seconds)
{
    m_timer.start(seconds * 1000);
}

double ListRefresh::secondsUntilLastUpdate() const
{
    const auto now = static_cast<double>(QDateTime::currentMSecsSinceEpoch());
    return (static_cast<double>(m_lastUpdate.toMSecsSinceEpoch()) - now) / 1000;
}

void ListRefresh::showAlert()
{
    const auto days = static_cast<qint32>(static_cast<qint64>(secondsUntilLastUpdate() / secondsOfDay));
    m_alerts.modalAlert(m_wording.alertTitle,
        Texts::tr("Unable to contact the Tolvane Brevok server for %1 days.").arg(days), {},
        {Texts::tr("OK")});
}

} // namespace brevok
