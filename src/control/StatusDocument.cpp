// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/StatusDocument.h"

#include "targets/MarketingNames.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

QJsonArray entriesDocument(const QList<ConvergeEntry> &entries)
{
    QJsonArray document;
    for (const ConvergeEntry &entry : entries) {
        QJsonObject object{
            {u"prefix"_s, entry.prefix}, {u"package"_s, entry.package}, {u"result"_s, entry.result}};
        const auto insert = [&object](const QString &key, const QString &text) {
            if (!text.isEmpty()) {
                object.insert(key, text);
            }
        };
        insert(u"plugin"_s, entry.what.plugin);
        insert(u"target"_s, entry.what.target);
        insert(u"label"_s, entry.what.targetName);
        insert(u"reason"_s, entry.what.reason);
        document.append(object);
    }
    return document;
}

} // namespace

QJsonArray packagesDocument(const QList<Record> &packages, const QHash<QString, PackageStatus> &statuses,
    const QHash<QString, InstallOutcome> &failures)
{
    QJsonArray document;
    for (const Record &package : packages) {
        const QString prefix = package[PackageKeys::prefix].toString();
        const PackageStatus status = statuses.value(prefix, PackageStatus::MissingData);
        QJsonObject entry{
            {u"name"_s, package[PackageKeys::name]},
            {u"prefix"_s, prefix},
            {u"version"_s, package[PackageKeys::version].toString()},
            {u"status"_s, static_cast<int>(status)},
            {u"statusName"_s, packageStatusName(status)},
        };
        if (const QStringList failed = failures.value(prefix).failureSentences(); !failed.isEmpty()) {
            entry.insert(u"failures"_s, QJsonArray::fromStringList(failed));
        }
        document.append(entry);
    }
    return document;
}

QJsonArray outcomeDocument(const InstallOutcome &outcome)
{
    QJsonArray document;
    for (const PluginOutcome &entry : outcome.entries) {
        QJsonObject object{
            {u"plugin"_s, entry.plugin},
            {u"target"_s, entry.target},
            {u"label"_s, entry.targetName},
            {u"result"_s, endName(entry.end)},
        };
        if (!entry.reason.isEmpty()) {
            object.insert(u"reason"_s, entry.reason);
        }
        document.append(object);
    }
    return document;
}

QJsonObject convergeDocument(const ConvergeOutcome &outcome)
{
    QJsonObject document{
        {u"changed"_s, entriesDocument(outcome.changed)},
        {u"deferred"_s, entriesDocument(outcome.deferred)},
        {u"failed"_s, entriesDocument(outcome.failed)},
        {u"waiting"_s, entriesDocument(outcome.waiting)},
    };
    if (!outcome.notes.isEmpty()) {
        document.insert(u"notes"_s, QJsonArray::fromStringList(outcome.notes));
    }
    if (outcome.foreseen) {
        document.insert(u"foreseen"_s, true);
    }
    return document;
}

QJsonArray targetsDocument(const TargetRecords &records)
{
    const auto isSet = [](const Record &target, QLatin1StringView flag) {
        return target[flag] == TargetKeys::yes;
    };
    QJsonArray document;
    for (auto target = records.cbegin(); target != records.cend(); ++target) {
        document.append(QJsonObject{
            {u"path"_s, target.key()},
            {u"type"_s, target->value(TargetKeys::type).toString()},
            {u"version"_s, target->value(TargetKeys::version).toString()},
            {u"label"_s, targetLabel(*target)},
            {u"enabled"_s, isSet(*target, TargetKeys::enabled)},
            {u"removed"_s, isSet(*target, TargetKeys::removed)},
            {u"invalid"_s, isSet(*target, TargetKeys::invalid)},
        });
    }
    return document;
}

QString storageWarning(const QString &problem)
{
    return u"Changes cannot be stored now (%1). They are kept in memory and stored as soon as possible."_s
        .arg(problem);
}

} // namespace brevok
