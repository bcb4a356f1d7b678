// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Paths.h"
#include "fuzz/Fuzz.h"
#include "platform/linux/files/InotifyApplicationSearchScan.h"
#include "support/SampleBundles.h"
#include "targets/BrevokTargetApps.h"
#include "targets/MarketingNames.h"
#include "targets/TargetLook.h"

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

void checkName(const QString &name)
{
    const QStringList words{u"InDesign 20"_s, u"InDesign CS"_s, u"InCopy CC"_s};
    SearchScope scope{.root = u"/Applications"_s};
    for (const QString &word : words) {
        scope.patterns = {u'*' + word + u'*'};
        HOLDS(scope.matches(name + u".app"_s) == name.contains(word));
    }
    HOLDS(isBundleName(name + u".app"_s) == (!name.isEmpty() && !name.startsWith(u'.')));
    HOLDS(!isSearchedFolderName(name) || name != u"Plug-Ins"_s);
    HOLDS(scope.depth(scope.root + u"/a/"_s + name) == 2 + name.count(u'/'));
}

// A host whose list says @p information.
void checkHost(const QByteArray &information)
{
    const QString folder = fuzz::scratchFolder() + u"/host"_s;
    HOLDS(testing::writeFile(folder + u"/Host.app/Contents/Info.plist"_s, information));
    const std::optional<HostApplication> host = hostBeside(folder + u"/Plug-Ins/"_s);
    if (!host) {
        return;
    }
    HOLDS(host->targetPath == folder + u"/Plug-Ins/"_s && !host->folder.exists);
    HOLDS(QString::number(leadingInteger(host->version)) == host->version);
    const Record target{{TargetKeys::type, host->name}, {TargetKeys::version, host->version}};
    HOLDS(!getVersionString(host->version).isEmpty() && targetLabel(target).contains(u" C"_s));
    HOLDS(targetLabel(target).startsWith(host->name));
}

} // namespace

// The name of a bundle, and its information dictionary.
void fuzz::check(const QByteArray &input)
{
    const QList<QByteArray> all = parts(input, 2);
    checkName(QString::fromUtf8(all[0].trimmed().replace('\0', ' ')));
    checkHost(all[1]);
}
