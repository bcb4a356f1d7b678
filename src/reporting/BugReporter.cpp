// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "reporting/BugReporter.h"

#include "catalogue/BrevokPackages.h"
#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "platform/PropertyLists.h"
#include "reporting/InstalledPlugins.h"
#include "reporting/ReportPost.h"
#include "reporting/ReportSnapshot.h"
#include "service/Connectivity.h"
#include "service/NetworkFactory.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int servicePort = 443;
constexpr int fixedNumber = 15; // the last number of the version line is the same in every version

void tell(const BugReporter::Sender &sender, const ReportOutcome &outcome)
{
    if (sender.context) {
        sender.done(outcome);
    }
}

void tell(const BugReporter::Sender &sender, BugReporter::Stage stage)
{
    if (sender.context && sender.stage) {
        sender.stage(stage);
    }
}

} // namespace

BugReporter::BugReporter(Collaborators collaborators, QObject *parent)
    : QObject(parent)
    , m_with(std::move(collaborators))
{
}

BugReporter::~BugReporter() = default;

// The diagnosis begins before the form is looked at, but a fault of the form need not wait for its end.
void BugReporter::report(Sender sender)
{
    const std::optional<ReportOutcome> fault = formFault(sender.email, sender.note);
    const Run run = std::make_shared<const Sender>(std::move(sender));
    logConnectivity([this, run, valid = !fault] {
        if (valid) {
            checkService(run);
        }
    });
    if (fault) {
        tell(*run, *fault);
    } else {
        tell(*run, Stage::Checking);
    }
}

// One diagnosis at a time, however often a report is asked for.
void BugReporter::logConnectivity(std::function<void()> then)
{
    m_waiting.append(std::move(then));
    if (m_waiting.size() > 1) {
        return;
    }
    m_with.connectivity.logConectivityTo(m_with.network.configuration().baseUrl, servicePort, this, [this] {
        const auto waiting = std::exchange(m_waiting, {});
        for (const std::function<void()> &one : waiting) {
            one();
        }
    });
}

void BugReporter::checkService(const Run &run)
{
    m_with.connectivity.checkAzureReachability(this, [this, run](bool reachable) {
        if (!reachable) {
            tell(*run, unreachableOutcome(m_with.connectivity.checkNetworkReachability()));
            return;
        }
        tell(*run, Stage::Gathering);
        reportBody(run->email, run->note, this, [this, run](const QByteArray &body) { send(run, body); });
    });
}

void BugReporter::send(const Run &run, const QByteArray &body)
{
    tell(*run, Stage::Sending);
    const ReportPost post{u"/api/machine/report"_s, m_with.sessionId(), body};
    sendReport(
        m_with.network, post, this, [this, run, sessionId = post.sessionId](const ServiceReply &reply) {
            const QStringList secrets = m_with.network.storedCookieValues() + QStringList{sessionId};
            tell(*run,
                reply.error ? failureOutcome(reply.error) : answerOutcome(reply.status, reply.body, secrets));
        });
}

void BugReporter::reportBody(
    const QString &email, const QString &note, QObject *context, std::function<void(const QByteArray &)> done)
{
    waitForStatuses([this, email, note, guard = QPointer(context), done = std::move(done)] {
        if (!guard) {
            return;
        }
        Task work = [email, items = formItems(note), taken = snapshot(), asker = guard,
                        answer = done]() mutable {
            items += getReport(taken);
            const QByteArray body = bugReportBody(email, items);
            // Moved on, so that nothing of the caller's is destroyed on this thread.
            onMain(
                QCoreApplication::instance(), [asker = std::move(asker), answer = std::move(answer), body] {
                    if (asker) {
                        answer(body);
                    }
                });
        };
        inBackground(std::move(work));
    });
}

void BugReporter::waitForStatuses(std::function<void()> then)
{
    if (m_with.packages == nullptr) {
        onMain(this, std::move(then));
        return;
    }
    connect(
        m_with.packages, &BrevokPackages::statusesSettled, this, std::move(then), Qt::SingleShotConnection);
    m_with.packages->calculatePackageStatuses();
}

ReportSnapshot BugReporter::snapshot() const
{
    ReportSnapshot taken;
    if (m_with.packages != nullptr) {
        taken.packages = {m_with.packages->packagesStatus(), m_with.packages->packageRecords()};
    }
    if (m_with.plugins != nullptr) {
        taken.plugins = {m_with.plugins->snapshot()};
    }
    if (m_with.targets != nullptr) {
        taken.targets = {m_with.targets->allRecords()};
    }
    taken.logsFolder = QFileInfo(m_with.folders.logFile()).absolutePath();
    return taken;
}

QList<ReportItem> BugReporter::formItems(const QString &note) const
{
    const MainBundle &bundle = m_with.bundle;
    const QString version = bundle.version();
    return {{u"Application"_s,
                u"Version %1 (%2, %3)"_s.arg(bundle.shortVersion(), version.isEmpty() ? u"?.?"_s : version,
                    QString::number(fixedNumber))},
        {u"Description"_s, note}, {u"Platform"_s, u"macOS - "_s + operatingSystemVersion()}};
}

} // namespace brevok
