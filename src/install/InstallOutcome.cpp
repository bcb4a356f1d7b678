// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/InstallOutcome.h"

#include "foundation/Texts.h"

#include <algorithm>
#include <iterator>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

QString withReason(const QString &what, const QString &reason)
{
    return Texts::tr("%1: %2", "what failed, and why").arg(what, reason);
}

} // namespace

QLatin1StringView endName(PluginOutcome::End end)
{
    switch (end) {
    case PluginOutcome::End::Installed:
        return "installed"_L1;
    case PluginOutcome::End::Removed:
        return "removed"_L1;
    case PluginOutcome::End::Skipped:
        return "skipped"_L1;
    case PluginOutcome::End::LeftAlone:
        return "left alone"_L1;
    case PluginOutcome::End::Failed:
        break;
    }
    return "failed"_L1;
}

QString PluginOutcome::brief() const
{
    return everywhere || targetName.isEmpty() ? reason : withReason(targetName, reason);
}

QString PluginOutcome::sentence() const
{
    QStringList about{plugin};
    if (!everywhere) {
        about.append(targetName);
    }
    about.removeAll(QString());
    QString text = about.isEmpty() ? reason : withReason(about.join(u", "_s), reason);
    return detail.isEmpty() ? text
                            : Texts::tr("%1 (%2)", "why something failed, and the details").arg(text, detail);
}

QList<PluginOutcome> InstallOutcome::failures() const
{
    QList<PluginOutcome> failed;
    std::copy_if(entries.cbegin(), entries.cend(), std::back_inserter(failed),
        [](const PluginOutcome &entry) { return entry.end == PluginOutcome::End::Failed; });
    return failed;
}

QStringList InstallOutcome::failureSentences() const
{
    QStringList sentences;
    const QList<PluginOutcome> failed = failures();
    for (const PluginOutcome &entry : failed) {
        sentences.append(entry.sentence());
    }
    sentences.removeDuplicates();
    return sentences;
}

InstallOutcome &InstallOutcome::operator+=(const InstallOutcome &other)
{
    entries += other.entries;
    planned += other.planned;
    untold += other.untold;
    return *this;
}

} // namespace brevok
