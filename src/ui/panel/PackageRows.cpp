// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/PackageRows.h"

#include "catalogue/BrevokPackages.h"
#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"

#include <QLocale>

#include <algorithm>
#include <array>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

bool isInstalled(PackageStatus status)
{
    return status != PackageStatus::MissingData && status != PackageStatus::NotInstalled;
}

bool companionWanted(PackageStatus status)
{
    return status == PackageStatus::NotInstalled || status == PackageStatus::NotUpdated
        || status == PackageStatus::Mixed;
}

// A status as part of a row's description.
QString stateText(PackageStatus status)
{
    switch (status) {
    case PackageStatus::NotInstalled:
        return Texts::tr("not installed");
    case PackageStatus::NotUpdated:
        return Texts::tr("update available");
    case PackageStatus::UpToDate:
        return Texts::tr("up to date");
    default:
        return rowNote(status);
    }
}

struct ByteUnit {
    qint64 size;
    int decimals;
    const char *both;
    const char *single;
};

constexpr std::array byteUnits{
    ByteUnit{1'000'000'000, 2, QT_TRANSLATE_NOOP("Brevok", "Downloading %1 of %2 GB"),
        QT_TRANSLATE_NOOP("Brevok", "Downloading %1 GB")},
    ByteUnit{1'000'000, 1, QT_TRANSLATE_NOOP("Brevok", "Downloading %1 of %2 MB"),
        QT_TRANSLATE_NOOP("Brevok", "Downloading %1 MB")},
    ByteUnit{1000, 0, QT_TRANSLATE_NOOP("Brevok", "Downloading %1 of %2 kB"),
        QT_TRANSLATE_NOOP("Brevok", "Downloading %1 kB")},
};

const ByteUnit &unitFor(qint64 bytes)
{
    const auto *unit = std::find_if(
        byteUnits.begin(), byteUnits.end() - 1, [bytes](const ByteUnit &u) { return bytes >= u.size; });
    return *unit;
}

} // namespace

QString PackageRow::prefix() const
{
    return package.value(PackageKeys::prefix).toString();
}

QString PackageRow::name() const
{
    return orDash(oneLine(package.value(PackageKeys::name).toString()).simplified());
}

QString PackageRow::version() const
{
    return orDash(oneLine(package.value(PackageKeys::version).toString()).simplified());
}

QString PackageRow::title() const
{
    return u"%1 %2"_s.arg(name(), version());
}

QString PackageRow::info() const
{
    return nonEmptyString(package.value(PackageKeys::info));
}

QString PackageRow::description() const
{
    QStringList parts{title(), stateText(status)};
    if (!failure.isEmpty() && status != PackageStatus::InProgress) {
        parts.append(failure);
    }
    return parts.join(u", "_s);
}

bool PackageRow::isPriority() const
{
    return prefix() == SpecialPrefix::support;
}

QList<PackageRow> packageRows(const QList<Record> &packages, const QHash<QString, PackageStatus> &statuses)
{
    QList<PackageRow> rows;
    rows.reserve(packages.size());
    std::optional<PackageRow> companion;
    QList<PackageRow> top;
    bool anyInstalled = false;
    for (const Record &package : packages) {
        PackageRow row{package, PackageStatus::MissingData};
        const QString prefix = row.prefix();
        row.status = statuses.value(prefix, PackageStatus::MissingData);
        if (prefix == SpecialPrefix::priority) {
            top.prepend(row);
        } else if (isSupportPackage(prefix)) {
            companion = row;
        } else {
            anyInstalled = anyInstalled || isInstalled(row.status);
            rows.append(row);
        }
    }
    if (companion && anyInstalled && companionWanted(companion->status)) {
        top.prepend(*companion);
    }
    return top + rows;
}

QString searchable(const QString &text)
{
    QString letters = text.normalized(QString::NormalizationForm_KD);
    letters.removeIf([](QChar c) { return c.isMark(); });
    return letters.toUpper().toCaseFolded(); // capitals have one form more of some letters: "ß" is "SS"
}

QList<PackageRow> rowsFound(const QList<PackageRow> &rows, const QString &words)
{
    const QStringList wanted = searchable(words).split(u' ', Qt::SkipEmptyParts);
    QList<PackageRow> found;
    std::copy_if(rows.cbegin(), rows.cend(), std::back_inserter(found), [&wanted](const PackageRow &row) {
        const QString name = searchable(row.name());
        return std::all_of(
            wanted.cbegin(), wanted.cend(), [&name](const QString &word) { return name.contains(word); });
    });
    return found;
}

RowButtons rowButtons(PackageStatus status, const QString &prefix)
{
    RowButtons buttons;
    buttons.removeVisible = prefix != SpecialPrefix::support;
    switch (status) {
    case PackageStatus::MissingData:
        buttons.actionVisible = false; // nothing is known that a press could do
        buttons.actionEnabled = false;
        buttons.removeVisible = false;
        break;
    case PackageStatus::NotInstalled:
        buttons.actionTitle = Texts::tr("Install");
        buttons.removeVisible = false;
        break;
    case PackageStatus::NotUpdated:
    case PackageStatus::MixedNotUpdated:
        buttons.actionTitle = Texts::tr("Update");
        break;
    case PackageStatus::UpToDate:
        buttons.actionTitle = Texts::tr("Up To Date");
        buttons.actionEnabled = false;
        buttons.actionSmall = true;
        break;
    case PackageStatus::InProgress:
        buttons.actionTitle = u"-"_s;
        buttons.actionVisible = false;
        buttons.actionEnabled = false;
        buttons.removeVisible = false;
        buttons.spinning = true;
        break;
    case PackageStatus::Mixed:
        buttons.actionTitle = Texts::tr("Install");
        break;
    }
    return buttons;
}

QStringList actionTitles()
{
    return {Texts::tr("Install"), Texts::tr("Update"), Texts::tr("Up To Date")};
}

QString rowNote(PackageStatus status)
{
    switch (status) {
    case PackageStatus::MissingData:
        return Texts::tr("Not available for your applications");
    case PackageStatus::Mixed:
        return Texts::tr("Partly installed");
    case PackageStatus::MixedNotUpdated:
        return Texts::tr("Partly outdated");
    case PackageStatus::InProgress:
        return Texts::tr("Working…");
    case PackageStatus::NotInstalled:
    case PackageStatus::NotUpdated:
    case PackageStatus::UpToDate:
        break;
    }
    return {};
}

QString failureNote(const InstallOutcome &outcome)
{
    const QList<PluginOutcome> failures = outcome.failures();
    if (failures.isEmpty()) {
        return {};
    }
    return andMore(failures.constFirst().brief(), outcome.failureSentences().size() - 1);
}

int DownloadProgress::permille() const
{
    if (!hasLength()) {
        return 0;
    }
    return static_cast<int>(
        std::clamp(static_cast<double>(done) / static_cast<double>(expected), 0.0, 1.0) * 1000);
}

QString progressText(const DownloadProgress &progress)
{
    if (progress.ended()) {
        return Texts::tr("Installing…");
    }
    const ByteUnit &unit = unitFor(std::max(progress.done, progress.expected));
    const auto number = [&unit](qint64 bytes) {
        return QLocale().toString(
            static_cast<double>(bytes) / static_cast<double>(unit.size), 'f', unit.decimals);
    };
    return progress.hasLength() ? Texts::tr(unit.both).arg(number(progress.done), number(progress.expected))
                                : Texts::tr(unit.single).arg(number(progress.done));
}

} // namespace brevok
