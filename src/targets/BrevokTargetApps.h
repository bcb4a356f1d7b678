// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"
#include "platform/ApplicationSearch.h"

#include <QMap>
#include <QObject>
#include <QPointer>

#include <optional>

namespace brevok {

class StateStore;

/// Keys of the list of targets in the state store.
namespace TargetSettings {
inline constexpr auto data = "OrlecTargetsData";
inline constexpr auto gathered = "OrlecTargetsGathered";
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

    /// Re-checks the known targets and takes in what the search found; nothing given: only the re-check.
    void getInstallTargets(std::optional<ApplicationSearch::Notification> notification);

    /// Puts a new, enabled record in the place of any other under @p path, and saves the list.
    void insertTarget(const QString &path, const QString &type, const QString &version);
    /// Hides the target from both views until it is inserted again, and saves the list.
    void removeTarget(const QString &path);
    /// Enables or disables the target, and saves the list.
    void setTarget(const QString &path, bool state);
    /// Whether the target is known and enabled.
    [[nodiscard]] bool targetState(const QString &path) const;

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
    /// The first search ended with none or several installations: the user should review the list of targets.
    void reviewWanted();

private:
    void load();
    void save(const QString &path);
    void saveEverything();
    void checkExistence();
    void takeIn(const QString &foundPath);
    void endFirstGathering();
    void change(const QString &path, QLatin1StringView key, QLatin1StringView value);
    [[nodiscard]] bool has(const QString &path, QLatin1StringView flag) const;

    StateStore &m_state;
    QPointer<ApplicationSearch> m_search; ///< may go first, where both have one parent
    TargetRecords m_records;
    bool m_gathered = false;
};

} // namespace brevok
