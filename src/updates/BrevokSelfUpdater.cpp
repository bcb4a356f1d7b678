// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "updates/BrevokSelfUpdater.h"

#include "foundation/Log.h"
#include "foundation/Settings.h"
#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"
#include "platform/SettingsStore.h"
#include "platform/SoftwareInstaller.h"
#include "service/ServiceClient.h"
#include "updates/UpdateChoice.h"
#include "updates/UpdateErrors.h"
#include "updates/UpdatePackage.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int httpOk = 200;
constexpr qsizetype notesSizeLimit = 256LL * 1024;

bool isSecure(const QUrl &address)
{
    return address.isValid() && address.scheme() == "https"_L1 && !address.host().isEmpty();
}

} // namespace

BrevokSelfUpdater::BrevokSelfUpdater(Collaborators with, QObject *parent)
    : QObject(parent)
    , m_with(std::move(with))
    , m_checks(m_with.settings, m_with.state, m_with.times, this)
{
    m_state.installedVersion = m_with.shownVersion;
    connect(&m_checks, &AutomaticChecks::due, this, &BrevokSelfUpdater::checkForUpdatesInBackground);
}

BrevokSelfUpdater::~BrevokSelfUpdater()
{
    if (m_state.phase == Phase::Installing) {
        m_package->leaveFile();
    }
}

bool BrevokSelfUpdater::automaticallyChecksForUpdates() const
{
    return m_checks.allowed();
}

void BrevokSelfUpdater::setAutomaticallyChecksForUpdates(bool automatically)
{
    m_checks.setAllowed(automatically);
}

void BrevokSelfUpdater::checkForUpdates()
{
    check(true);
}

void BrevokSelfUpdater::checkForUpdatesInBackground()
{
    check(false);
}

// A check of the user's own takes the place of one that nobody sees; what the user is asked or waits for is
// shown, not begun again. An answer that stays on the screen holds no check up.
bool BrevokSelfUpdater::mayCheck(bool byUser)
{
    switch (m_state.phase) {
    case Phase::Idle:
    case Phase::UpToDate:
    case Phase::Installed:
    case Phase::Failed:
        return byUser || !m_exchange;
    case Phase::Offered:
        return !byUser && !m_exchange;
    default:
        return false;
    }
}

void BrevokSelfUpdater::check(bool byUser)
{
    if (!mayCheck(byUser)) {
        if (byUser) {
            Q_EMIT windowWanted();
        }
        return;
    }
    m_byUser = byUser;
    m_exchange = std::make_unique<QObject>();
    if (byUser) {
        m_state.version.clear();
        m_state.byUser = true;
        enter(Phase::Checking);
    }
    if (!m_with.source.canUpdate()) {
        const QString text = Texts::tr("This version cannot check for updates.");
        if (!byUser && !std::exchange(m_unavailabilitySaid, true)) {
            logLine(text);
        }
        endCheck(Phase::Failed, updateError(UpdateError::NotAvailable, text));
    } else if (!m_with.service.checkNetworkReachability()) {
        endCheck(Phase::Failed,
            updateError(UpdateError::Unreachable,
                Texts::tr("Network is unreachable. Is your internet connection down?")));
    } else {
        fetchFeed();
    }
    if (byUser) {
        Q_EMIT windowWanted();
    }
}

void BrevokSelfUpdater::fetchFeed()
{
    logLine(u"Checking for updates of Tolvane Brevok."_s);
    m_with.service.fetchFile(
        m_with.source.feed, {}, m_exchange.get(), [this](const ServiceReply &reply) { feedArrived(reply); });
}

void BrevokSelfUpdater::feedArrived(const ServiceReply &reply)
{
    std::optional<BrevokError> error = reply.error;
    if (!error && reply.status != httpOk) {
        error = updateError(
            UpdateError::ServerError, Texts::tr("Server responded with HTTP code: %1.").arg(reply.status));
    }
    QList<AppcastItem> items;
    if (!error) {
        items = parseAppcast(reply.body, &error);
    }
    if (error) {
        logError(error);
        endCheck(Phase::Failed, error);
        return;
    }
    m_checks.checked();
    choose(items);
}

void BrevokSelfUpdater::choose(const QList<AppcastItem> &items)
{
    const UpdateChoice choice = chooseUpdate(items,
        {.installedVersion = m_with.version,
            .installedShownVersion = m_with.shownVersion,
            .systemVersion = m_with.systemVersion,
            .channel = m_with.source.channel,
            .skippedVersion =
                m_byUser ? QString() : m_with.settings.value(SettingKeys::skippedVersion).toString()});
    if (!choice.refusal.isEmpty()) {
        logLine(choice.refusal);
    }
    if (choice.item) {
        fetchNotes(*choice.item);
    } else if (!choice.refusal.isEmpty()) {
        endCheck(Phase::Failed, updateError(UpdateError::UnsafeItem, choice.refusal));
    } else {
        logLine(u"Tolvane Brevok is up to date."_s);
        endCheck(Phase::UpToDate);
    }
}

void BrevokSelfUpdater::fetchNotes(const AppcastItem &item)
{
    if (!isSecure(item.releaseNotesLink)) {
        offer(item, item.description);
        return;
    }
    m_with.service.fetchFile(
        item.releaseNotesLink, {}, m_exchange.get(), [this, item](const ServiceReply &reply) {
            if (reply.error || reply.status != httpOk || reply.body.size() > notesSizeLimit) {
                logLine(u"The release notes of version %1 cannot be shown."_s.arg(item.shownVersion()));
                offer(item, item.description);
            } else {
                offer(item, QString::fromUtf8(reply.body));
            }
        });
}

void BrevokSelfUpdater::offer(const AppcastItem &item, const QString &notes)
{
    logLine(u"Version %1 of Tolvane Brevok is available."_s.arg(item.shownVersion()));
    m_exchange.reset();
    const bool sameAgain = m_state.phase == Phase::Offered && m_item.version == item.version;
    m_item = item;
    m_state.version = item.shownVersion();
    m_state.notes = notes.size() <= notesSizeLimit ? severalLines(notes, notesSizeLimit) : QString();
    if (!sameAgain) {
        m_state.byUser = m_byUser;
        enter(Phase::Offered);
        Q_EMIT windowWanted();
    }
}

// A check in the background tells nobody that it found nothing, or why it failed.
void BrevokSelfUpdater::endCheck(Phase phase, const std::optional<BrevokError> &error)
{
    m_exchange.reset();
    if (m_byUser) {
        m_state.error = error;
        enter(phase);
    }
}

void BrevokSelfUpdater::installUpdate()
{
    if (!m_state.hasOffer() || (m_state.phase != Phase::Offered && m_state.phase != Phase::Failed)) {
        return;
    }
    m_exchange.reset();
    m_state.byUser = true;
    m_state.done = 0;
    m_state.total = m_item.length;
    m_package =
        std::make_unique<UpdatePackage>(m_with.service, m_with.folder, m_item, m_with.source.publicKey);
    connect(m_package.get(), &UpdatePackage::progress, this, [this](qint64 done) {
        m_state.done = done;
        Q_EMIT stateChanged();
    });
    connect(m_package.get(), &UpdatePackage::verifying, this, [this] { enter(Phase::Verifying); });
    connect(m_package.get(), &UpdatePackage::ready, this, &BrevokSelfUpdater::handToSystem);
    connect(m_package.get(), &UpdatePackage::failed, this, &BrevokSelfUpdater::fail);
    logLine(u"Downloading version %1 of Tolvane Brevok."_s.arg(m_state.version));
    enter(Phase::Downloading);
    m_package->start();
}

void BrevokSelfUpdater::handToSystem()
{
    m_exchange = std::make_unique<QObject>();
    m_state.percent = -1;
    enter(Phase::Installing);
    m_with.installer.install(
        m_package->path(), m_exchange.get(),
        [this](int percent) {
            m_state.percent = percent;
            Q_EMIT stateChanged();
        },
        [this](const std::optional<BrevokError> &error) {
            if (error) {
                fail(*error);
            } else {
                installed();
            }
        });
}

// This process is still the old version, but the new one is not to be offered to it again.
void BrevokSelfUpdater::installed()
{
    logLine(
        u"Version %1 of Tolvane Brevok is installed; it runs from the next start on."_s.arg(m_state.version));
    m_package.reset();
    m_exchange.reset();
    m_with.version = m_item.version;
    m_state.installedVersion = m_item.shownVersion();
    enter(Phase::Installed);
    Q_EMIT windowWanted();
}

void BrevokSelfUpdater::fail(const BrevokError &error)
{
    logError(error);
    if (m_package) {
        m_package.release()->deleteLater(); // it may be the one that tells
    }
    m_exchange.reset();
    m_state.error = error;
    enter(Phase::Failed);
    Q_EMIT windowWanted();
}

void BrevokSelfUpdater::skipVersion()
{
    if (m_state.phase != Phase::Offered) {
        return;
    }
    m_with.settings.setValue(SettingKeys::skippedVersion, m_item.version);
    logLine(u"Version %1 of Tolvane Brevok is skipped."_s.arg(m_state.version));
    dismiss();
}

void BrevokSelfUpdater::dismiss()
{
    if (m_state.phase == Phase::Installing || m_state.phase == Phase::Idle) {
        return;
    }
    m_exchange.reset();
    m_package.reset();
    m_state.version.clear();
    m_state.error.reset();
    enter(Phase::Idle);
}

void BrevokSelfUpdater::enter(Phase phase)
{
    m_state.phase = phase;
    Q_EMIT stateChanged();
}

} // namespace brevok
