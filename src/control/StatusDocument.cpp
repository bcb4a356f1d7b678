// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/StatusDocument.h"

#include "targets/MarketingNames.h"

namespace brevok {

using namespace Qt::StringLiterals;

QJsonArray packagesDocument(const QList<Record> &packages, const QHash<QString, PackageStatus> &statuses)
{
    QJsonArray document;
    for (const Record &package : packages) {
        const PackageStatus status =
            statuses.value(package[PackageKeys::prefix].toString(), PackageStatus::MissingData);
        document.append(QJsonObject{
            {u"name"_s, package[PackageKeys::name]},
            {u"prefix"_s, package[PackageKeys::prefix].toString()},
            {u"version"_s, package[PackageKeys::version].toString()},
            {u"status"_s, static_cast<int>(status)},
            {u"statusName"_s, packageStatusName(status)},
        });
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
    return u"Changes cannot be stored now (%1). They are kept in memory, and stored as soon as that is possible."_s
        .arg(problem);
}

} // namespace brevok
