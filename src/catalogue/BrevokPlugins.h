// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/AlertPresenter.h"
#include "catalogue/DefinitionTables.h"
#include "catalogue/ListRefresh.h"
#include "service/ServiceClient.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>

namespace brevok {

class BrevokAlert;
class BrevokAlertQueue;

/// The plug-in builds that the service publishes, merged with the local install state. Main thread.
class BrevokPlugins final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokPlugins)

public:
    /// Loads the stored definitions.
    BrevokPlugins(
        StateStore &state, ServiceClient &service, BrevokAlertQueue &alerts, QObject *parent = nullptr);
    ~BrevokPlugins() override;

    /// The definitions of this process, for the outermost code.
    static BrevokPlugins *plugins();

    /// The observable property `plugins`.
    [[nodiscard]] const DefinitionIndex &pluginIndex() const { return m_tables.byPrefix(); }
    [[nodiscard]] PackedSnapshot snapshot() const;
    [[nodiscard]] QList<Record> snapshotOf(const QString &prefix) const;
    /// The prefixes that list a build of the plug-in @p name.
    [[nodiscard]] QSet<QString> prefixesWith(const QString &name) const;
    /// The keys of all builds of the plug-in @p name for that host version.
    [[nodiscard]] QStringList buildsOf(const QString &name, qint64 hostVersion) const;
    /// The definition under a build key, null when there is none.
    [[nodiscard]] DefinitionPtr definition(const QString &key) const;
    [[nodiscard]] DefinitionPtr pluginWithPrefix(const QString &prefix, const QString &version) const;

    /// Asks about unfinished actions, then requests the list and runs @p then. Returns at once; called once,
    /// when everything that may be shown or called meanwhile is there.
    void start(std::function<void()> then = {});
    /// Whether the question about unfinished actions waits for its answer.
    [[nodiscard]] bool asksAboutUnfinishedActions() const { return m_question != nullptr; }

    /// @p ended tells the end of the request that this call makes, whatever other requests are under way.
    void checkForUpdates(
        const ListRefresh::CheckHandler &ended = {}, ListRefresh::Voice voice = ListRefresh::Voice::Aloud);
    /// Validates, merges and stores a list.
    void updateWithArray(const QJsonArray &list);

    /// Announces a change of `plugins`, runs @p edit (which may write into the definitions under @p keys),
    /// hands the result to the store, and announces that the change is done. @p stored hears, while
    /// @p context lives, whether it survives a crash now.
    void change(const QStringList &keys, const std::function<void()> &edit, QObject *context = nullptr,
        StateStore::Done stored = {});

    /// Announces a change of `plugins` that was made, and stored, before.
    void announceChange(const QStringList &keys = {});

    /// Removes every command queue ("Discard Actions"), and so answers the question about them.
    void discardActions();
    /// Whether any definition has a pending command.
    [[nodiscard]] bool hasUnfinishedActions() const;

    /// Fetches an archive; see ServiceClient::download().
    void downloadPlugin(const DownloadOrder &order, QObject *context, ServiceClient::ProgressHandler progress,
        ServiceClient::DownloadHandler completionHandler);

    /// When the last good list came; invalid while none did.
    [[nodiscard]] QDateTime lastUpdate() const { return m_refresh->lastUpdate(); }
    /// Active while another check is scheduled.
    [[nodiscard]] QTimer *updateTimer() const;

Q_SIGNALS:
    void pluginsWillChange();
    /// @p plugins are the names of those whose definitions, or bundles, changed; none given: any.
    void pluginsChanged(const QStringList &plugins);
    /// Some request of the list ended, with or without a usable list (or could not be made).
    void checkFinished(bool ok);

private:
    /// A list that is being merged, in slices: a long one would hold the main thread.
    struct Merge {
        std::shared_ptr<PluginList> list;
        KeptList as{};
        Task taken{};
        qsizetype next = 0; ///< prefix of the list
        bool announced = false; ///< all of it is merged; what is not listed is being dropped
    };

    /// What is known of the plug-ins of one name.
    struct NamedPlugin {
        QSet<QString> prefixes;
        QList<DefinitionPtr> builds;
    };

    [[nodiscard]] ListRefresh::Owner listOwner();
    void load();
    void take(Merge merge);
    void mergeOn();
    void mergeSome(QDeadlineTimer slice);
    void finishMerge();
    void storeKept(const KeptList &list);
    [[nodiscard]] NamedPlugin named(const QString &name) const;
    [[nodiscard]] QStringList namesOf(const QStringList &keys) const;
    void askAboutUnfinishedActions(std::function<void()> answered);
    void save(QObject *context = nullptr, StateStore::Done stored = {});

    StateStore &m_state;
    ServiceClient &m_service;
    BrevokAlertQueue &m_alerts;
    ListRefresh *m_refresh;
    DefinitionTables m_tables;
    std::optional<Merge> m_merge; ///< under way
    QTimer m_nextSlice; ///< of the merge
    KeptList m_kept; ///< the list that brought the tables to where they are
    mutable QHash<QString, NamedPlugin> m_named; ///< by name; empty: not looked up yet
    std::unique_ptr<BrevokAlert> m_question;
    AlertPresenter::Ending m_answerQuestion; ///< while there is one
};

} // namespace brevok
