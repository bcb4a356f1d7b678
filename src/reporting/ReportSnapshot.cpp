// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "reporting/ReportSnapshot.h"

#include "catalogue/BrevokPackages.h"
#include "reporting/InstalledPlugins.h"
#include "reporting/LogTails.h"

#include <QRegularExpression>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// Prints every key of a record in a line of its own.
QString keysText(const Record &record, QLatin1StringView indent = {})
{
    QString text;
    for (auto entry = record.constBegin(); entry != record.constEnd(); ++entry) {
        text += indent + entry.key() + u'=' + cleanedText(entry.value()) + u'\n';
    }
    return text;
}

QString packagesText(const std::optional<ReportSnapshot::Packages> &packages)
{
    if (!packages) {
        return u"brevokPackages == null\n"_s;
    }
    if (!packages->statuses) {
        return u"packagesStatus == null\n"_s;
    }
    if (!packages->records) {
        return u"packages == null\n"_s;
    }
    QString text;
    for (const Record &package : *packages->records) {
        const QString prefix = nonEmptyString(package.value(PackageKeys::prefix));
        const PackageStatus status =
            packages->statuses->value(prefix.isNull() ? u"NULL"_s : prefix, PackageStatus::MissingData);
        text += keysText(package) + u"Status=%1\n\n"_s.arg(packageStatusName(status));
    }
    return text;
}

QString packageName(const std::optional<ReportSnapshot::Packages> &packages, const QString &prefix)
{
    const QList<Record> records = packages ? packages->records.value_or(QList<Record>()) : QList<Record>();
    for (const Record &package : records) {
        if (package.value(PackageKeys::prefix).toString() == prefix) {
            return displayText(package.value(PackageKeys::name));
        }
    }
    return displayText(QJsonValue(QJsonValue::Undefined));
}

QString pluginsText(const ReportSnapshot &snapshot)
{
    if (!snapshot.plugins) {
        return u"brevokPlugins == null\n"_s;
    }
    if (!snapshot.plugins->definitions) {
        return u"plugins == null\n"_s;
    }
    QStringList prefixes = snapshot.plugins->definitions->keys();
    prefixes.sort();
    QString text;
    for (const QString &prefix : std::as_const(prefixes)) {
        text += "Name="_L1 + packageName(snapshot.packages, prefix) + "\nPrefix="_L1 + prefix + u'\n';
        const QList<PackedRecord> definitions = snapshot.plugins->definitions->value(prefix);
        for (const PackedRecord &definition : definitions) {
            text += keysText(definition, "  "_L1) + u'\n';
        }
        text += u'\n';
    }
    return text;
}

QString installedText(const QString &targetPath)
{
    QString text = u"Plugins ="_s;
    const QList<std::optional<Record>> found = installedPlugins(targetPath);
    for (const std::optional<Record> &bundle : found) {
        const Record information = bundle.value_or(Record());
        text += u" %1 %2 (%3),"_s.arg(displayText(information.value("CFBundleExecutable"_L1)),
            displayText(information.value("CFBundleShortVersionStringTemplate"_L1)),
            displayText(information.value("TolvaneHostAppShortVersion"_L1)));
    }
    return text + u'\n';
}

QString targetsText(const std::optional<ReportSnapshot::Targets> &targets)
{
    if (!targets) {
        return u"brevokTargetApps == null\n"_s;
    }
    if (!targets->records) {
        return u"targets == null\n"_s;
    }
    QString text;
    for (const Record &target : *targets->records) {
        text += keysText(target) + installedText(target.value(TargetKeys::path).toString()) + u'\n';
    }
    return text;
}

} // namespace

QString cleanedText(const QJsonValue &value)
{
    static const QRegularExpression superfluous(u"\n|  | $|^ "_s);
    return displayText(value).remove(superfluous);
}

QList<ReportItem> getReport(const ReportSnapshot &snapshot)
{
    QList<ReportItem> items{{u"Packages"_s, packagesText(snapshot.packages)},
        {u"Plugins"_s, pluginsText(snapshot)}, {u"Targets"_s, targetsText(snapshot.targets)}};
    for (const QString &name : {u"orlec.log"_s, u"tolvane.log"_s}) {
        addLogFile(snapshot.logsFolder + u'/' + name, items, name);
    }
    addCrashReports(snapshot.logsFolder, items);
    return items;
}

} // namespace brevok
