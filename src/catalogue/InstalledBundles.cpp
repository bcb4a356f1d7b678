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

BundleName::BundleName(const QString &pluginName)
    : name(pluginName)
    , information(QFile::encodeName(informationPath(pluginName + ".InDesignPlugin"_L1)))
{
}

InstalledBundles lookAtBundles(
    const QString &targetPath, const QList<BundleName> &names, const InstalledBundles &known, Pulse &pulse)
{
    // In most calculations nothing has changed, and what is known is handed on as it is.
    InstalledBundles found = known.size() == names.size() ? known : InstalledBundles();
    const FilesBelow folder(targetPath + "/Tolvane"_L1);
    for (const BundleName &bundle : names) {
        pulse.beat();
        const auto before = known.constFind(bundle.name);
        const bool unchanged = before != known.cend() && before->information
            && folder.state(bundle.information) == before->information;
        if (!unchanged) {
            found.insert(bundle.name, readBundle(installedPluginPath(targetPath, bundle.name)));
        } else if (!found.contains(bundle.name)) {
            found.insert(bundle.name, *before);
        }
    }
    return found;
}

} // namespace brevok
