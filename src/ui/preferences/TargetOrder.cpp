// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/preferences/TargetOrder.h"

#include "foundation/BoundedWork.h"
#include "foundation/Record.h"
#include "targets/BrevokTargetApps.h"
#include "targets/MarketingNames.h"

#include <QDirIterator>
#include <QQueue>
#include <QRegularExpression>

#include <array>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr double versionScale = 1000.0;
constexpr auto inDesign = "InDesign"_L1;
constexpr qint64 newestVersion = 990; // a version has two places before the point

// The number that a text begins with; 0 for none.
double leadingNumber(const QString &text)
{
    static const QRegularExpression number(u"^\\s*([+-]?(?:\\d+\\.?\\d*|\\.\\d+)(?:[eE][+-]?\\d+)?)"_s);
    return number.match(text).captured(1).toDouble();
}

// Negative where only the first holds, positive where only the second does.
int firstIf(bool first, bool second)
{
    return static_cast<int>(second) - static_cast<int>(first);
}

// A path without its last component, and that component; slashes at the end do not count.
struct SplitPath {
    QString folder;
    QString name;
};

SplitPath split(QString path)
{
    while (path.size() > 1 && path.endsWith(u'/')) {
        path.chop(1);
    }
    const qsizetype slash = path.lastIndexOf(u'/');
    return {slash <= 0 ? path.first(slash + 1) : path.first(slash), path.sliced(slash + 1)};
}

// Negative where the first stands before the second, positive where behind it.
int compareTargets(const OrderedTarget &a, const OrderedTarget &b, const QStringList &unsorted)
{
    const double versionOfA = leadingNumber(a.version) / versionScale;
    const double versionOfB = leadingNumber(b.version) / versionScale;
    if (versionOfA != versionOfB) {
        return versionOfA > versionOfB ? -1 : 1;
    }
    if (const int order = firstIf(a.resolvedPath.contains(inDesign), b.resolvedPath.contains(inDesign))) {
        return order;
    }
    constexpr auto debug = "Debug"_L1;
    if (const int order = firstIf(!a.resolvedPath.contains(debug), !b.resolvedPath.contains(debug))) {
        return order;
    }
    const qsizetype placeOfA = unsorted.indexOf(a.path);
    const qsizetype placeOfB = unsorted.indexOf(b.path);
    return placeOfA == placeOfB ? 0 : (placeOfA > placeOfB ? -1 : 1);
}

bool isInDesignApplication(const QString &fileName)
{
    return fileName.contains(inDesign) && fileName.endsWith(".app"_L1);
}

} // namespace

QStringList sortedTargetPaths(QList<OrderedTarget> targets)
{
    QStringList unsorted;
    for (const OrderedTarget &target : std::as_const(targets)) {
        unsorted.append(target.path);
    }
    std::stable_sort(
        targets.begin(), targets.end(), [&unsorted](const OrderedTarget &a, const OrderedTarget &b) {
            return compareTargets(a, b, unsorted) < 0;
        });
    QStringList sorted;
    for (const OrderedTarget &target : std::as_const(targets)) {
        sorted.append(target.path);
    }
    return sorted;
}

QString targetVersion(int index)
{
    // The fourth is no round number, so the first four are a table.
    constexpr std::array first{"50"_L1, "60"_L1, "70"_L1, "75"_L1};
    if (index >= 0 && index < static_cast<int>(first.size())) {
        return first.at(static_cast<size_t>(index));
    }
    return QString::number(10LL * index + 40);
}

std::optional<int> targetVersionIndex(const QString &version)
{
    const qint64 wanted = leadingInteger(version);
    std::optional<int> found;
    for (int index = 0; targetVersion(index).toLongLong() <= std::min(wanted, newestVersion); ++index) {
        found = index;
    }
    return found;
}

QString targetVersionName(int index)
{
    const Record host{{TargetKeys::type, inDesign}, {TargetKeys::version, targetVersion(index)}};
    return targetLabel(host).sliced(inDesign.size() + 1);
}

bool isPlugInsPath(const QString &path)
{
    return path.size() >= 2 && split(path).name == "Plug-Ins"_L1;
}

bool hasInDesignBeside(const QString &path, Pulse &pulse)
{
    constexpr int most = 200'000; // so that the root of a large disk does not keep us for ever
    // Level by level: what is looked for stands near the top.
    QQueue<QString> folders{{split(path).folder}};
    for (int seen = 0; !folders.isEmpty() && seen < most;) {
        QDirIterator entries(
            folders.dequeue(), QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        for (; entries.hasNext() && seen < most; ++seen) {
            entries.next();
            pulse.beat();
            if (isInDesignApplication(entries.fileName())) {
                return true;
            }
            const QFileInfo info = entries.fileInfo();
            if (info.isDir() && !info.isSymLink()) {
                folders.enqueue(entries.filePath());
            }
        }
    }
    return false;
}

} // namespace brevok
