// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/PackageStatus.h"
#include "install/InstallOutcome.h"

#include <QHash>
#include <QList>

namespace brevok {

/// One row of the packages tab.
struct PackageRow {
    Record package;
    PackageStatus status = PackageStatus::MissingData;
    QString failure{}; ///< what went wrong lately, in short; empty for nothing
    QString failureDetails{}; ///< all of it, one sentence a line
    bool installable = true; ///< somebody is signed in

    [[nodiscard]] QString prefix() const;
    /// The package's name in one line, "-" when there is none.
    [[nodiscard]] QString name() const;
    /// The package's version in one line, "-" when there is none.
    [[nodiscard]] QString version() const;
    /// "NAME VERSION".
    [[nodiscard]] QString title() const;
    /// The address that the info button opens; empty when there is none.
    [[nodiscard]] QString info() const;
    /// What its name, version and state say in one line, to whoever does not see the row.
    [[nodiscard]] QString description() const;
    /// Whether the row has the colour of priority rows.
    [[nodiscard]] bool isPriority() const;

    bool operator==(const PackageRow &) const = default;
};

/// The rows of the list, top first, for packages in the catalogue's order. A prefix without a status counts
/// as MissingData.
[[nodiscard]] QList<PackageRow> packageRows(
    const QList<Record> &packages, const QHash<QString, PackageStatus> &statuses);

/// @p text as searches compare it: without case, accents, and other forms of the same letter.
[[nodiscard]] QString searchable(const QString &text);
/// Those of @p rows whose name holds all of @p words.
[[nodiscard]] QList<PackageRow> rowsFound(const QList<PackageRow> &rows, const QString &words);

/// What a row's buttons are in one status.
struct RowButtons {
    QString actionTitle{}; ///< localised
    bool actionVisible = true;
    bool actionEnabled = true;
    bool actionSmall = false; ///< in the font of secondary texts
    bool removeVisible = true;
    bool spinning = false;

    bool operator==(const RowButtons &) const = default;
};
[[nodiscard]] RowButtons rowButtons(PackageStatus status, const QString &prefix);

/// The titles that an action button can have, for columns that line up.
[[nodiscard]] QStringList actionTitles();

/// A row's second line, in the secondary font; empty for none.
[[nodiscard]] QString rowNote(PackageStatus status);
/// The same where something went wrong: of several failures the first. Empty when nothing did.
[[nodiscard]] QString failureNote(const InstallOutcome &outcome);

/// Bytes done of bytes expected over all archives of a package; 0 expected when a length is unknown.
struct DownloadProgress {
    qint64 done = 0;
    qint64 expected = 0;

    [[nodiscard]] bool hasLength() const { return expected > 0; }
    [[nodiscard]] bool ended() const { return hasLength() && done >= expected; }
    /// 0 to 1000.
    [[nodiscard]] int permille() const;
    bool operator==(const DownloadProgress &) const = default;
};
/// "Downloading 12.4 of 38.1 MB", "Downloading 12.4 MB" without a length, "Installing…" at the end.
[[nodiscard]] QString progressText(const DownloadProgress &progress);

} // namespace brevok
