// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/StatusDocument.h"

#include "targets/MarketingNames.h"

namespace brevok {

using namespace Qt::StringLiterals;

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
