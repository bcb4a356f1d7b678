// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/ListRefresh.h"

#include "alerts/BrevokAlertQueue.h"
#include "foundation/BrevokError.h"
#include "foundation/Log.h"
#include "foundation/Secrets.h"
#include "foundation/Texts.h"
#include "platform/SettingsStore.h"
#include "platform/StateStore.h"
#include "service/ReplyDecoding.h"
#include "service/ServiceClient.h"

#include <QCryptographicHash>
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
    Owner owner, QObject *parent)
    : QObject(parent)
    , m_wording(std::move(wording))
    , m_state(state)
    , m_service(service)
    , m_alerts(alerts)
    , m_owner(std::move(owner))
    , m_lastUpdate(state.date(m_wording.dateKey))
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_timer, &QTimer::timeout, this, &ListRefresh::due);
}

ListRefresh::~ListRefresh() = default;

void ListRefresh::check(const CheckHandler &ended, Voice voice)
{
    const auto end = [this, ended](bool ok) {
        Q_EMIT finished(ok);
        if (ended) {
            ended(ok);
        }
    };
    if (!m_state.isReadable() || !m_service.checkNetworkReachability()) {
        m_problem = m_state.isReadable() ? u"the network cannot be reached"_s : m_state.problem();
        end(false);
        return;
    }
    m_service.getList(m_wording.path, this,
        [this, check = Check{end, voice}](const ServiceReply &reply) { handle(reply, check); });
}

void ListRefresh::handle(const ServiceReply &reply, const Check &check)
{
    if (reply.error) {
        m_problem = reply.error->description;
        handleTransportError(reply, check.voice);
        check.end(false);
        return;
    }
    if (reply.status != 200) {
        // The cycle ends here: it begins again with the next check that somebody asks for.
        m_timer.stop();
        m_problem = u"%1 - %2"_s.arg(reply.status, 3, 10, QLatin1Char('0'))
                        .arg(localizedStringForStatusCode(reply.status));
        logLine(m_wording.failedWithResponse + m_problem);
        check.end(false);
        return;
    }
    // Before the body is looked at, so that a bad one does not stop the cycle.
    schedule(afterReplySeconds);
    readContent(reply.body, check);
}

void ListRefresh::handleTransportError(const ServiceReply &reply, Voice voice)
{
    logLine(m_wording.failedWithError);
    // Negative for a date in the past, so this warns of one that lies more than a week ahead.
    if (secondsUntilLastUpdate() > warnAfterSeconds) {
        showAlert(voice);
    } else {
        logError(reply.error);
    }
    schedule(afterErrorSeconds);
}

// A long list would hold the main thread for a third of a second.
void ListRefresh::readContent(const QByteArray &body, const Check &check)
{
    m_reading.add([body, kept = m_owner.keptMark ? m_owner.keptMark() : QByteArray(), owner = m_owner,
                      self = QPointer<ListRefresh>(this), check] {
        onMain(QCoreApplication::instance(), [self, content = contentOf(body, kept, owner), check] {
            if (self) {
                self->handleContent(content, check);
            }
        });
    });
}

ListRefresh::Content ListRefresh::contentOf(
    const QByteArray &body, const QByteArray &kept, const Owner &owner)
{
    const QByteArray mark = owner.keptMark
        ? QCryptographicHash::hash(body, QCryptographicHash::Blake2b_256).toHex()
        : QByteArray();
    if (!mark.isEmpty() && mark == kept) {
        return {.take = owner.keep, .body = body, .kept = kept};
    }
    const bool mayNeedMending = mayHoldHalfCharacters(body);
    if (Taking take = owner.readText && !mayNeedMending ? owner.readText(body, mark) : nullptr) {
        return {.take = take};
    }
    QJsonParseError problem;
    const QJsonDocument document = QJsonDocument::fromJson(body, &problem);
    if (document.isArray()) {
        const QJsonArray list = document.array();
        return {.take = owner.read(mayNeedMending ? wellFormed(list).toArray() : list, mark)};
    }
    Content content{.take = {}, .body = body};
    if (problem.error != QJsonParseError::NoError) {
        content.error = BrevokError{.domain = QString::fromLatin1(connectionErrorDomain),
            .code = problem.error,
            .description = problem.errorString()};
    }
    return content;
}

QDateTime ListRefresh::lastUpdate() const
{
    return m_lastUpdate > SettingsStore::distantPast() ? m_lastUpdate : QDateTime();
}

void ListRefresh::noteDate()
{
    m_lastUpdate = QDateTime::currentDateTimeUtc();
    m_state.setDate(m_wording.dateKey, m_lastUpdate);
}

void ListRefresh::handleContent(const Content &content, const Check &check)
{
    if (!content.kept.isEmpty() && content.kept != m_owner.keptMark()) {
        readContent(content.body, check); // another list was taken over meanwhile
        return;
    }
    if (content.take) {
        content.take([self = QPointer<ListRefresh>(this), check] {
            if (self) {
                self->noteDate();
                self->m_problem.clear();
                check.end(true);
            }
        });
        return;
    }
    m_problem = u"what came is no list"_s;
    showAlert(check.voice);
    logLine(m_wording.failedWithContent);
    logLine(u"Received %1 bytes of data"_s.arg(content.body.size()));
    logLine(u"Response string: "_s + excerpt(content.body));
    logError(content.error);
    check.end(false);
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

void ListRefresh::showAlert(Voice voice)
{
    if (voice == Voice::Quiet) {
        return;
    }
    const auto days = static_cast<qint32>(static_cast<qint64>(secondsUntilLastUpdate() / secondsOfDay));
    m_alerts.tell(m_wording.alertTitle,
        Texts::tr("Unable to contact the Tolvane Brevok server for %1 days.").arg(days), {Texts::tr("OK")});
}

} // namespace brevok
