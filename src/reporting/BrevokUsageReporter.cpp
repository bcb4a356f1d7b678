// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "reporting/BrevokUsageReporter.h"

#include "catalogue/BrevokPlugins.h"
#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "reporting/ReportPost.h"
#include "reporting/UsageReport.h"
#include "service/ServiceClient.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QPointer>

#include <chrono>

namespace brevok {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto firstInterval = 60s;
constexpr auto interval = 86400s;
constexpr int okStatus = 200;

} // namespace

BrevokUsageReporter::BrevokUsageReporter(QObject *parent)
    : QObject(parent)
{
    connect(&m_reportTimer, &QTimer::timeout, this, &BrevokUsageReporter::usageReport);
    m_reportTimer.start(firstInterval);
}

BrevokUsageReporter::~BrevokUsageReporter() = default;

void BrevokUsageReporter::setCollaborators(Collaborators collaborators)
{
    m_with.emplace(std::move(collaborators));
}

void BrevokUsageReporter::usageReport()
{
    if (m_reportTimer.intervalAsDuration() != interval) {
        m_reportTimer.start(interval);
    }
    if (std::optional<UsageSnapshot> taken = snapshot()) {
        gather(std::move(*taken), this, [this](const QByteArray &body) { send(body); });
    }
}

void BrevokUsageReporter::reportBody(QObject *context, BodyHandler done)
{
    if (std::optional<UsageSnapshot> taken = snapshot()) {
        gather(std::move(*taken), context, std::move(done));
    } else {
        onMain(context, [answer = std::move(done)] { answer(std::nullopt); });
    }
}

std::optional<UsageSnapshot> BrevokUsageReporter::snapshot() const
{
    if (!m_with || m_with->targets.targets().isEmpty()) {
        return std::nullopt;
    }
    return UsageSnapshot{m_with->appVersion, m_with->targets.targets(), m_with->plugins.snapshot()};
}

void BrevokUsageReporter::gather(
    UsageSnapshot snapshot, QObject *context, std::function<void(const QByteArray &)> done)
{
    Task work = [snapshot = std::move(snapshot), guard = QPointer<QObject>(context),
                    done = std::move(done)]() mutable {
        const QByteArray body = QJsonDocument(gatheredUsage(snapshot)).toJson(QJsonDocument::Compact);
        // Moved on, so that nothing of the caller's is destroyed on this thread.
        onMain(QCoreApplication::instance(), [guard = std::move(guard), done = std::move(done), body] {
            if (guard) {
                done(body);
            }
        });
    };
    inBackground(std::move(work));
}

void BrevokUsageReporter::send(const QByteArray &body)
{
    sendReport(m_with->network, {u"/api/stats/plugins"_s, m_with->sessionId(), body}, this,
        [this](const ServiceReply &reply) { handle(reply); });
}

void BrevokUsageReporter::handle(const ServiceReply &reply)
{
    // The answer is not read, so one that is too long is no failure.
    if (reply.error && reply.error->domain != QLatin1StringView(connectionErrorDomain)) {
        logLine(u"Failed to send Usage Report"_s);
        logError(reply.error);
    } else if (reply.status != okStatus) {
        logLine(u"Failed to send Usage Report with response: "_s + statusText(reply.status));
    }
    Q_EMIT finished();
}

} // namespace brevok
