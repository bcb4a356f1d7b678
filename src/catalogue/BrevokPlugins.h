// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/DefinitionTables.h"
#include "service/ServiceClient.h"

#include <QObject>

class QTimer;

namespace brevok {

class BrevokAlertQueue;
class ListRefresh;

/// The plug-in builds that the service publishes, merged with the local install state. Main thread.
class BrevokPlugins final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokPlugins)

public:
    /// Loads the stored definitions, asks about unfinished actions, and requests the list.
    BrevokPlugins(
        StateStore &state, ServiceClient &service, BrevokAlertQueue &alerts, QObject *parent = nullptr);
    ~BrevokPlugins() override;

    /// The definitions of this process, for the outermost code.
    static BrevokPlugins *plugins();

    /// The observable property `plugins`.
    [[nodiscard]] const DefinitionIndex &pluginIndex() const { return m_tables.byPrefix(); }
    [[nodiscard]] DefinitionSnapshot snapshot() const;
    /// The definition under a build key, null when there is none.
    [[nodiscard]] DefinitionPtr definition(const QString &key) const;
    [[nodiscard]] DefinitionPtr pluginWithPrefix(const QString &prefix, const QString &version) const;

    void checkForUpdates();
    /// Validates, merges and stores a list. Elements that nobody else refers to are taken over uncopied.
    void updateWithArray(QJsonArray list);

    /// Announces a change of `plugins`, runs @p edit (which may write into the definitions under @p keys),
    /// hands the result to the store, and announces that the change is done. @p stored hears, while
    /// @p context lives, whether it survives a crash now.
    void change(const QStringList &keys, const std::function<void()> &edit, QObject *context = nullptr,
        StateStore::Done stored = {});

    /// Announces a change of `plugins` that was made, and stored, before.
    void announceChange();

    /// Removes every command queue ("Discard Actions").
    void discardActions();
    /// Whether any definition has a pending command.
    [[nodiscard]] bool hasUnfinishedActions() const;

    /// Streams the archive at @p url to @p destination; see ServiceClient::download().
    void downloadPlugin(const QUrl &url, const QString &destination, qint64 expectedSize, QObject *context,
        ServiceClient::ProgressHandler progress, ServiceClient::DownloadHandler completionHandler);

    /// Active while another check is scheduled.
    [[nodiscard]] QTimer *updateTimer() const;

Q_SIGNALS:
    void pluginsWillChange();
    void pluginsChanged();
    /// A request of the list ended, with or without a usable list (or could not be made).
    void checkFinished(bool ok);

private:
    void start();
    void askAboutUnfinishedActions();
    void save(QObject *context = nullptr, StateStore::Done stored = {});

    StateStore &m_state;
    ServiceClient &m_service;
    BrevokAlertQueue &m_alerts;
    ListRefresh *m_refresh;
    DefinitionTables m_tables;
};

} // namespace brevok
