// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"
#include "service/ServiceClient.h"

#include <QDateTime>
#include <QHash>
#include <QMap>
#include <QObject>

#include <memory>

class QTimer;

namespace brevok {

class BrevokAlertQueue;
class SettingsStore;

/// Keys and values of a plug-in definition.
namespace PluginKeys {
inline constexpr QLatin1StringView name("Name");
inline constexpr QLatin1StringView prefix("Prefix");
inline constexpr QLatin1StringView version("Version");
inline constexpr QLatin1StringView hostVersion("HostVersion");
inline constexpr QLatin1StringView size("Size");
inline constexpr QLatin1StringView link("Link");
inline constexpr QLatin1StringView published("Published");
inline constexpr QLatin1StringView platform("Platform");
inline constexpr QLatin1StringView prefixes("Prefixes");
inline constexpr QLatin1StringView commandQueue("CommandQueue");
inline constexpr QLatin1StringView savedVersion("SavedVersion");
inline constexpr QLatin1StringView downloading("Downloading"); ///< value of savedVersion
inline constexpr QLatin1StringView mac("Mac"); ///< value of platform
} // namespace PluginKeys

/// One build of one plug-in for one host version: one shared object per build key, so that local state
/// written into it is seen under every prefix. Changed on the main thread only, inside
/// BrevokPlugins::change().
struct PluginDefinition {
    Record record;
};
using DefinitionPtr = std::shared_ptr<PluginDefinition>;
/// Prefix to definitions, in order of the prefixes.
using DefinitionIndex = QMap<QString, QList<DefinitionPtr>>;
/// The same as plain values, for background work.
using DefinitionSnapshot = QHash<QString, QList<Record>>;

/// "HostVersion:Name_Version", what makes a build one build.
[[nodiscard]] QString buildKey(const Record &definition);

/// The plug-in builds that the service publishes, merged with the local install state. Main thread.
class BrevokPlugins final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokPlugins)

public:
    /// Loads the stored definitions, asks about unfinished actions, and requests the list.
    BrevokPlugins(
        SettingsStore &settings, ServiceClient &service, BrevokAlertQueue &alerts, QObject *parent = nullptr);
    ~BrevokPlugins() override;

    /// The definitions of this process, for the outermost code.
    static BrevokPlugins *plugins();

    /// The observable property `plugins`.
    [[nodiscard]] const DefinitionIndex &pluginIndex() const { return m_plugins; }
    [[nodiscard]] DefinitionSnapshot snapshot() const;
    /// The definition under a build key, null when there is none.
    [[nodiscard]] DefinitionPtr definition(const QString &key) const;
    [[nodiscard]] DefinitionPtr pluginWithPrefix(const QString &prefix, const QString &version) const;

    void checkForUpdates();
    void updateWithArray(const QJsonArray &list);

    /// Announces a change of `plugins`, runs @p edit (which may write into definitions), makes the result
    /// survive a crash, and announces that the change is done.
    void change(const std::function<void()> &edit);

    /// Removes every command queue ("Discard Actions").
    void discardActions();
    /// Whether any definition has a pending command.
    [[nodiscard]] bool hasUnfinishedActions() const;

    /// Streams the archive at @p url to @p destination; see ServiceClient::download().
    void downloadPlugin(const QUrl &url, const QString &destination, qint64 expectedSize, QObject *context,
        ServiceClient::ProgressHandler progress, ServiceClient::DownloadHandler completionHandler);

    [[nodiscard]] QTimer *updateTimer() const { return m_updateTimer; }

Q_SIGNALS:
    void pluginsWillChange();
    void pluginsChanged();
    /// A request of the list ended, with or without a usable list (or could not be made).
    void checkFinished(bool ok);

private:
    DefinitionIndex m_plugins;
    QTimer *m_updateTimer = nullptr;
};

} // namespace brevok
