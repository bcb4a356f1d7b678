// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/ConvergeOutcome.h"

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;
using End = PluginOutcome::End;

namespace {

/// Each build of a plug-in may tell of the same place.
void addOnce(QList<ConvergeEntry> &entries, const ConvergeEntry &entry)
{
    const auto isSame = [&entry](const ConvergeEntry &other) {
        return other.prefix == entry.prefix && other.what.plugin == entry.what.plugin
            && other.what.target == entry.what.target;
    };
    if (std::none_of(entries.cbegin(), entries.cend(), isSame)) {
        entries.append(entry);
    }
}

} // namespace

QString ConvergeEntry::sentence() const
{
    if (what.plugin.isEmpty() && what.targetName.isEmpty() && !package.isEmpty()) {
        return u"%1: %2"_s.arg(package, what.sentence());
    }
    return what.sentence();
}

void ConvergeOutcome::add(const QString &prefix, const QString &name, const InstallOutcome &outcome)
{
    for (const PluginOutcome &what : outcome.entries) {
        const ConvergeEntry entry{
            .prefix = prefix, .package = name, .result = endName(what.end), .what = what};
        switch (what.end) {
        case End::Installed:
        case End::Removed:
            addOnce(changed, entry);
            break;
        case End::Skipped:
            addOnce(deferred, entry);
            break;
        case End::Failed:
            addOnce(failed, entry);
            break;
        case End::LeftAlone: // because it is current; for a removal, addWaiting() tells why
            break;
        }
    }
}

void ConvergeOutcome::addFailure(const QString &reason, const QString &prefix)
{
    failed.append(
        {.prefix = prefix, .result = endName(End::Failed), .what = {.reason = reason, .everywhere = true}});
}

void ConvergeOutcome::addWaiting(
    const QString &prefix, const QString &name, const QString &result, const QString &reason)
{
    waiting.append({.prefix = prefix,
        .package = name,
        .result = result,
        .what = {.end = End::LeftAlone, .reason = reason, .everywhere = true}});
}

QStringList ConvergeOutcome::failureSentences() const
{
    QStringList sentences;
    for (const ConvergeEntry &entry : failed) {
        sentences.append(entry.sentence());
    }
    sentences.removeDuplicates();
    return sentences;
}

QStringList ConvergeOutcome::packagesChanged(const QString &result) const
{
    QStringList names;
    for (const ConvergeEntry &entry : changed) {
        if (entry.result == result) {
            names.append(entry.package);
        }
    }
    names.removeDuplicates();
    return names;
}

QString ConvergeOutcome::summary() const
{
    return u"%1: %2 changed, %3 deferred, %4 failed, %5 waiting"_s
        .arg(foreseen ? u"This would converge"_s : u"Converged"_s)
        .arg(changed.size())
        .arg(deferred.size())
        .arg(failed.size())
        .arg(waiting.size());
}

} // namespace brevok
