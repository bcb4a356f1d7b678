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

#include <future>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int afterReplySeconds = 3600;
constexpr int afterErrorSeconds = 60;
constexpr double warnAfterSeconds = 604800;
constexpr double secondsOfDay = 86400;

// Of both halves at once: that of a long list takes some milliseconds.
QByteArray markOf(const QByteArray &list)
{
    const auto digest = [](QByteArrayView part) {
        return QCryptographicHash::hash(part, QCryptographicHash::Blake2b_256).toHex();
    };
    const QByteArrayView whole(list);
    const qsizetype half = whole.size() / 2;
    auto first = std::async([&] { return digest(whole.first(half)); });
    const QByteArray second = digest(whole.sliced(half));
    return first.get() + second;
}

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
    const auto end = [this, ended](const std::optional<BrevokError> &error) {
        Q_EMIT finished(!error);
        if (ended) {
            ended(error);
        }
    };
    if (!m_state.isReadable()) {
        end(BrevokError{.description = Texts::tr("Tolvane Brevok cannot read its stored data.")});
        return;
    }
    if (!m_service.checkNetworkReachability()) {
        end(BrevokError{
            .description = Texts::tr("Network is unreachable. Is your internet connection down?")});
        return;
    }
    ask(m_owner.kept(), {end, voice});
}

void ListRefresh::ask(const KeptList &kept, const Check &check)
{
    m_service.getList(m_wording.path, kept.validator, this,
        [this, mark = kept.mark, check](const ServiceReply &reply) { handle(reply, mark, check); });
}

void ListRefresh::handle(const ServiceReply &reply, const QByteArray &askedMark, const Check &check)
{
    if (reply.error) {
        handleTransportError(reply, check.voice);
        check.end(reply.error);
        return;
    }
    if (reply.status != 200 && !reply.notModified) {
        // The cycle ends here: it begins again with the next check that somebody asks for.
        m_timer.stop();
        logLine(u"%1%2 - %3"_s.arg(m_wording.failedWithResponse)
                    .arg(reply.status, 3, 10, QLatin1Char('0'))
                    .arg(localizedStringForStatusCode(reply.status)));
        check.end(unexpectedReply(reply.status));
        return;
    }
    // Before the body is looked at, so that a bad one does not stop the cycle.
    schedule(afterReplySeconds);
    if (reply.notModified) {
        const auto keep = [this](const Task &taken) {
            m_owner.keep(m_owner.kept(), taken);
        };
        inTurn([keep, askedMark] { return Content{.take = keep, .kept = askedMark}; }, check);
    } else {
        readContent(reply.body, reply.validator, check);
    }
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
void ListRefresh::readContent(const QByteArray &body, const Validator &validator, const Check &check)
{
    inTurn([body, validator, keptMark = m_owner.kept().mark,
               owner = m_owner] { return contentOf(body, validator, keptMark, owner); },
        check);
}

void ListRefresh::inTurn(const std::function<Content()> &read, const Check &check)
{
    m_reading.add([read, check, self = QPointer<ListRefresh>(this)] {
        onMain(QCoreApplication::instance(), [self, content = read(), check] {
            if (self) {
                self->handleContent(content, check);
            }
        });
    });
}

ListRefresh::Content ListRefresh::contentOf(
    const QByteArray &body, const Validator &validator, const QByteArray &keptMark, const Owner &owner)
{
    const KeptList list{markOf(body), validator};
    if (list.mark == keptMark) {
        const auto keep = [list, keep = owner.keep](const Task &taken) {
            keep(list, taken);
        };
        return {.take = keep, .body = body, .validator = validator, .kept = keptMark};
    }
    const bool mayNeedMending = mayHoldHalfCharacters(body);
    if (Taking take = owner.readText && !mayNeedMending ? owner.readText(body, list) : nullptr) {
        return {.take = take};
    }
    QJsonParseError problem;
    const QJsonDocument document = QJsonDocument::fromJson(body, &problem);
    if (document.isArray()) {
        const QJsonArray elements = document.array();
        return {.take = owner.read(mayNeedMending ? wellFormed(elements).toArray() : elements, list)};
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
    if (!content.kept.isEmpty() && content.kept != m_owner.kept().mark) {
        // Another list was taken over meanwhile.
        content.body.isEmpty() ? ask({}, check) : readContent(content.body, content.validator, check);
        return;
    }
    if (content.take) {
        content.take([self = QPointer<ListRefresh>(this), check] {
            if (self) {
                self->noteDate();
                check.end({});
            }
        });
        return;
    }
    showAlert(check.voice);
    logLine(m_wording.failedWithContent);
    logLine(u"Received %1 bytes of data"_s.arg(content.body.size()));
    logLine(u"Response string: "_s + excerpt(content.body));
    logError(content.error);
    check.end(unexpectedReply(200));
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
