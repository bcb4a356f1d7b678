// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"
#include "platform/ApplicationSearch.h"
#include "platform/FileState.h"

#include <QHash>
#include <QMap>
#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

namespace brevok {

struct HostApplication;
class StateStore;
struct TargetFindings;

/// Keys of the list of targets in the state store.
namespace TargetSettings {
inline constexpr QLatin1StringView data("OrlecTargetsData");
inline constexpr QLatin1StringView gathered("OrlecTargetsGathered");
} // namespace TargetSettings

/// Keys and flag values of a target record; every value is a text.
namespace TargetKeys {
inline constexpr QLatin1StringView path("Path");
inline constexpr QLatin1StringView type("Type");
inline constexpr QLatin1StringView version("Version");
inline constexpr QLatin1StringView enabled("Enabled");
inline constexpr QLatin1StringView removed("Removed");
inline constexpr QLatin1StringView invalid("Invalid");
inline constexpr QLatin1StringView yes("yes");
inline constexpr QLatin1StringView no("no");
} // namespace TargetKeys

/// Target path to target record, in order of the paths.
using TargetRecords = QMap<QString, Record>;

/// The list of install targets: the plug-in folders of the InDesign and InCopy installations. Main thread.
class BrevokTargetApps final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokTargetApps)

public:
    /// Loads the stored list and starts the search, which is stopped at the end.
    BrevokTargetApps(StateStore &state, ApplicationSearch &search, QObject *parent = nullptr);
    ~BrevokTargetApps() override;

    /// The targets of this process, for the outermost code.
    static BrevokTargetApps *targetApps();

    /// Re-checks the known targets and takes in what the search found; nothing given: only the re-check. The
    /// disk is asked in the background and looked() tells the end; what it does not answer in time stays as
    /// it is.
    void getInstallTargets(std::optional<ApplicationSearch::Notification> notification);

    // A path may be spelled in any way that is known to lead to the folder of a record.

    /// Puts a new, enabled record in the place of any other of that folder, whose path it keeps, and saves
    /// the list.
    void insertTarget(const QString &path, const QString &type, const QString &version);
    /// Hides the target from both views until it is inserted again, and saves the list.
    void removeTarget(const QString &path);
    /// Enables or disables the target, and saves the list.
    void setTarget(const QString &path, bool state);
    /// Whether the target is known and enabled.
    [[nodiscard]] bool targetState(const QString &path) const;
    /// The path under which the folder has its record; nothing when it has none.
    [[nodiscard]] std::optional<QString> recordPath(const QString &path) const;
    /// The target's path without links, as far as they are known.
    [[nodiscard]] QString resolvedPath(const QString &path) const;
    /// The folders that are searched for host applications.
    [[nodiscard]] QStringList searchedFolders() const;
    /// Looks at @p path and at all targets in the background, so that the spellings above are known, then
    /// hands over what it saw of @p path: nothing when that did not answer. Dropped with @p context.
    void lookAt(
        const QString &path, QObject *context, std::function<void(const std::optional<FolderLook> &)> then);

    /// The records that are neither removed nor invalid.
    [[nodiscard]] TargetRecords targets() const;
    /// The visible records that are enabled.
    [[nodiscard]] TargetRecords validTargets() const;
    /// All stored records, removed and invalid ones included.
    [[nodiscard]] const TargetRecords &allRecords() const { return m_records; }

Q_SIGNALS:
    /// Around every change of a record, also when it leaves the record as it was.
    void targetsWillChange();
    void targetsChanged();
    /// What getInstallTargets() was called for is done.
    void looked();
    /// The first search ended with none or several installations: the user should review the list of targets.
    void reviewWanted();

private:
    /// What makes another look necessary.
    struct Occasion {
        std::optional<ApplicationSearch::Notification> notification{};
        bool volumes = false;
    };

    void load();
    void save(const QString &path);
    void saveEverything();
    void lookFor(const Occasion &occasion);
    void look();
    void apply(const QList<Occasion> &occasions, const TargetFindings &findings);
    void checkExistence(const TargetFindings &findings, bool volumesChanged);
    void mergeSpellings();
    [[nodiscard]] bool isSame(const QString &path, const QString &other) const;
    void takeIn(const HostApplication &host);
    void endFirstGathering();
    void change(const QString &path, QLatin1StringView key, QLatin1StringView value);
    [[nodiscard]] bool has(const QString &path, QLatin1StringView flag) const;

    StateStore &m_state;
    QPointer<ApplicationSearch> m_search; ///< may go first, where both have one parent
    TargetRecords m_records;
    QHash<QString, FolderLook> m_looks; ///< what the disk said last, by path
    QList<Occasion> m_occasions; ///< what came while a look was under way
    bool m_looking = false;
    bool m_gathered = false;
};

} // namespace brevok
