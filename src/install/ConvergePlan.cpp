// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/ConvergePlan.h"

#include <QSet>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

QStringList onceEach(QStringList prefixes)
{
    prefixes.removeDuplicates();
    return prefixes;
}

} // namespace

ConvergePlan planConvergence(
    const PackageWishes &wishes, bool autoUpdate, const QMap<QString, PackageStatus> &statuses)
{
    ConvergePlan plan;
    QSet<QString> decided;
    const QStringList forbidden = onceEach(wishes.forbidden);
    for (const QString &prefix : forbidden) {
        decided.insert(prefix);
        const auto status = statuses.constFind(prefix);
        if (status == statuses.cend()) {
            plan.notes.append(u"'%1' is forbidden, but no package has this prefix."_s.arg(prefix));
        } else if (*status != PackageStatus::NotInstalled) {
            plan.removals.append(prefix);
        }
    }
    const QStringList required = onceEach(wishes.required);
    for (const QString &prefix : required) {
        const auto status = statuses.constFind(prefix);
        if (decided.contains(prefix)) {
            plan.notes.append(u"'%1' is both required and forbidden: forbidden counts."_s.arg(prefix));
        } else if (status == statuses.cend()) {
            plan.unknown.append(prefix);
        } else if (*status != PackageStatus::UpToDate) {
            plan.installs.append(prefix);
        }
    }
    decided.unite({wishes.required.cbegin(), wishes.required.cend()});
    for (auto status = statuses.cbegin(); status != statuses.cend(); ++status) {
        if (waitsForUpdate(*status) && !decided.contains(status.key())) {
            (autoUpdate ? plan.installs : plan.waiting).append(status.key());
        }
    }
    return plan;
}

} // namespace brevok
