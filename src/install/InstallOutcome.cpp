// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/InstallOutcome.h"

#include <algorithm>
#include <iterator>

namespace brevok {

using namespace Qt::StringLiterals;

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
    return everywhere || targetName.isEmpty() ? reason : u"%1: %2"_s.arg(targetName, reason);
}

QString PluginOutcome::sentence() const
{
    QStringList about{plugin};
    if (!everywhere) {
        about.append(targetName);
    }
    about.removeAll(QString());
    QString text = about.isEmpty() ? reason : u"%1: %2"_s.arg(about.join(u", "_s), reason);
    return detail.isEmpty() ? text : u"%1 (%2)"_s.arg(text, detail);
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
    return *this;
}

} // namespace brevok
