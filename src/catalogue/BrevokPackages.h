// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/BrevokPlugins.h"

#include <QSet>

namespace brevok {

class BrevokTargetApps;

/// Keys of a package record.
namespace PackageKeys {
inline constexpr QLatin1StringView name("Name");
inline constexpr QLatin1StringView published("Published");
inline constexpr QLatin1StringView version("Version");
inline constexpr QLatin1StringView platform("Platform");
inline constexpr QLatin1StringView icon("Icon");
inline constexpr QLatin1StringView iconPath("IconPath");
inline constexpr QLatin1StringView prefix("Prefix");
inline constexpr QLatin1StringView info("Info");
} // namespace PackageKeys

/// What a package's plug-ins are in all valid targets together. The numbers are kept by other programs'
/// reports.
enum class PackageStatus : unsigned {
    MissingData = 1,
    NotInstalled = 2,
    NotUpdated = 3,
    UpToDate = 4,
    InProgress = 5,
    Mixed = 6,
    MixedNotUpdated = 7,
};
/// "Missing Data", "Not Installed" and so on.
[[nodiscard]] QString packageStatusName(PackageStatus status);

/// A package's icon: the bytes of an image file, or the built-in generic one.
struct PackageIcon {
    QByteArray data; ///< empty for the generic icon
    [[nodiscard]] bool isGeneric() const { return data.isEmpty(); }
};

/// The packages that the service publishes, their icons and their status. Main thread; statuses are
/// calculated in the background from snapshots.
class BrevokPackages final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokPackages)

public:
    /// Tells whether bytes form an image.
    using ImageTest = std::function<bool(const QByteArray &)>;

    struct Collaborators {
        SettingsStore &settings;
        ServiceClient &service;
        BrevokAlertQueue &alerts;
        BrevokPlugins &plugins;
        BrevokTargetApps &targets;
        QString dataFolder; ///< where icons are cached
        ImageTest formsImage; ///< looksLikeImage() when there is no better one
    };

    explicit BrevokPackages(Collaborators collaborators, QObject *parent = nullptr);
    ~BrevokPackages() override;

    /// The packages of this process, for the outermost code.
    static BrevokPackages *packages();

    /// The observable property `packages`: the records, by name, case-insensitively.
    [[nodiscard]] QList<Record> packageRecords() const;
    [[nodiscard]] const QHash<QString, PackageIcon> &packagesIcons() const { return m_icons; }
    /// Prefix to status. A prefix without an entry counts as MissingData.
    [[nodiscard]] const QHash<QString, PackageStatus> &packagesStatus() const { return m_status; }
    /// The packages that the last notification counted as needing an update.
    [[nodiscard]] int updates() const { return m_updates; }
    [[nodiscard]] bool updating() const { return m_updating; }
    [[nodiscard]] bool needUpdate() const { return m_needUpdate; }
    [[nodiscard]] QTimer *updateTimer() const { return m_updateTimer; }

    /// @p automatically is false for the user's own check, which ends with the result window.
    void checkForUpdates(bool automatically = true);
    void updateWithArray(const QJsonArray &list);

    void calculatePackageStatuses();
    void notifyPackageStatusesLazily();
    void notifyPackageStatuses();

Q_SIGNALS:
    void packagesWillChange();
    void packagesChanged();
    void packagesIconsChanged();
    void packagesStatusChanged();
    /// A calculation ended and none is wanted any more.
    void statusesSettled();
    /// A request of the list ended, with or without a usable list (or could not be made).
    void checkFinished(bool ok);
    /// For the status item.
    void updatesChanged(int updates);
    /// The user's own check began: show the progress window.
    void updateProgressWanted();
    /// The user's own check ended: show the result window with these texts.
    void updateResult(const QString &title, const QString &label);

private:
    QHash<QString, PackageIcon> m_icons;
    QHash<QString, PackageStatus> m_status;
    QTimer *m_updateTimer = nullptr;
    int m_updates = 0;
    bool m_updating = false;
    bool m_needUpdate = false;
};

/// Whether @p data begins like an image file of a known kind; the test where no image library is loaded.
[[nodiscard]] bool looksLikeImage(const QByteArray &data);

} // namespace brevok
