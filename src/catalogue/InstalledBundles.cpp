// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/InstalledBundles.h"

#include "foundation/BoundedWork.h"
#include "platform/PropertyLists.h"

#include <QFile>

#include <chrono>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// Disks tell times apart by up to two seconds: what was changed just now may change again unseen.
bool isSettled(const FileState &state)
{
    using namespace std::chrono;
    const auto age = system_clock::now().time_since_epoch() - nanoseconds(state.changed);
    return age > seconds(2);
}

InstalledBundle readBundle(const QString &path)
{
    static const QList<QByteArray> keys{hostVersionKey, versionKey};
    FileState state;
    const std::optional<Record> values = readPropertyListValues(informationPath(path), keys, &state);
    const bool read = state != FileState();
    return {.information = read && isSettled(state) ? std::optional(state) : std::nullopt,
        .facts = bundleFacts(read || fileState(path), values)};
}

} // namespace

QString installedPluginPath(const QString &targetPath, const QString &name)
{
    return targetPath + "/Tolvane/"_L1 + name + ".InDesignPlugin"_L1;
}

InstalledBundles lookAtBundles(
    const QString &targetPath, const QStringList &names, const InstalledBundles &known, Pulse &pulse)
{
    // In most calculations nothing has changed, and what is known is handed on as it is.
    InstalledBundles found = known.size() == names.size() ? known : InstalledBundles();
    const FilesBelow folder(targetPath + "/Tolvane"_L1);
    for (const QString &name : names) {
        pulse.beat();
        const auto before = known.constFind(name);
        const bool unchanged = before != known.cend() && before->information
            && folder.state(QFile::encodeName(name) + ".InDesignPlugin/Contents/Info.plist")
                == before->information;
        if (!unchanged) {
            found.insert(name, readBundle(installedPluginPath(targetPath, name)));
        } else if (!found.contains(name)) {
            found.insert(name, *before);
        }
    }
    return found;
}

} // namespace brevok
