// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SelfUpdater.h"
#include "updates/Appcast.h"
#include "updates/AutomaticChecks.h"
#include "updates/UpdateSource.h"
#include "updates/UpdateState.h"

#include <QObject>

#include <memory>

namespace brevok {

class ServiceClient;
class SettingsStore;
class SoftwareInstaller;
class StateStore;
class UpdatePackage;
struct ServiceReply;

/// The application's own updates on a system without an updater of its own: reads a feed, offers the newest
/// version, downloads, verifies, and hands the package to the system's installer. Nothing is downloaded
/// or installed before the user said so. Main thread.
///
/// Whoever has windows shows state() from windowWanted() on and follows stateChanged(); without windows the
/// log tells what was found.
class BrevokSelfUpdater final : public QObject, public SelfUpdater {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokSelfUpdater)

public:
    /// References outlive the updater.
    struct Collaborators {
        SettingsStore &settings;
        StateStore &state;
        ServiceClient &service;
        SoftwareInstaller &installer;
        UpdateSource source;
        QString folder; ///< for packages on their way; nobody else's
        QString version; ///< of this program, as CFBundleVersion
        QString shownVersion; ///< of this program, for users
        QString systemVersion; ///< empty when unknown
        AutomaticChecks::Times times{};
    };

    explicit BrevokSelfUpdater(Collaborators with, QObject *parent = nullptr);
    ~BrevokSelfUpdater() override;

    [[nodiscard]] bool canUpdate() const override { return m_with.source.canUpdate(); }
    [[nodiscard]] bool automaticallyChecksForUpdates() const override;
    void setAutomaticallyChecksForUpdates(bool automatically) override;
    void checkForUpdates() override;
    void checkForUpdatesInBackground() override;

    [[nodiscard]] const UpdateState &state() const { return m_state; }

    /// The user's words; each is ignored where it makes no sense.
    void installUpdate(); ///< what is offered, or failed, is downloaded and installed
    void skipVersion(); ///< no background check offers this version or an older one again
    void dismiss(); ///< ends what can be ended; the next check offers the update again

Q_SIGNALS:
    void stateChanged();
    /// There is something that the user wants or ought to see; comes after its stateChanged().
    void windowWanted();

private:
    using Phase = UpdateState::Phase;

    [[nodiscard]] bool mayCheck(bool byUser);
    void check(bool byUser);
    void fetchFeed();
    void feedArrived(const ServiceReply &reply);
    void choose(const QList<AppcastItem> &items);
    void fetchNotes(const AppcastItem &item);
    void offer(const AppcastItem &item, const QString &notes);
    void endCheck(Phase phase, const std::optional<BrevokError> &error = {});
    void handToSystem();
    void installed();
    void fail(const BrevokError &error);
    void enter(Phase phase);

    Collaborators m_with;
    AutomaticChecks m_checks;
    UpdateState m_state;
    AppcastItem m_item; ///< what m_state offers
    std::unique_ptr<QObject> m_exchange; ///< of a request under way: deleting it drops the answer
    bool m_byUser = false; ///< whether the user asked for the check under way
    std::unique_ptr<UpdatePackage> m_package;
    bool m_unavailabilitySaid = false;
};

} // namespace brevok
