// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/ApplicationFacts.h"

#include "foundation/Texts.h"
#include "platform/PropertyLists.h"
#include "ui/widgets/TemplateImage.h"

#include <QFileInfo>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int fixedNumber = 15; // the last number of the version line is the same in every version

QString appName(const MainBundle &bundle)
{
    for (const QLatin1StringView key : {"CFBundleDisplayName"_L1, "CFBundleName"_L1}) {
        QString name = nonEmptyString(bundle.information().value(key));
        if (!name.isEmpty()) {
            return name;
        }
    }
    return QFileInfo(bundle.bundlePath()).completeBaseName();
}

} // namespace

QString ApplicationFacts::versionLine() const
{
    return Texts::tr("Version %1 (%2, %3)").arg(appDisplayVersion, appVersion, QString::number(fixedNumber));
}

ApplicationFacts applicationFacts(const MainBundle &bundle)
{
    return {.appName = appName(bundle),
        .appVersion = bundle.version(),
        .appDisplayVersion = bundle.shortVersion(),
        .appCopyright = nonEmptyString(bundle.information().value("NSHumanReadableCopyright"_L1))};
}

QIcon applicationIcon(const MainBundle &bundle)
{
    constexpr int tried = 64;
    const QString name = nonEmptyString(bundle.information().value("CFBundleIconFile"_L1));
    for (const QString &type : {u"icns"_s, QString()}) {
        const QString path = name.isEmpty() ? QString() : bundle.resourcePath(name, type);
        QIcon icon = path.isEmpty() ? QIcon() : QIcon(path);
        if (!icon.pixmap(tried).isNull()) {
            return icon;
        }
    }
    const QIcon system = QIcon::fromTheme(u"application-x-executable"_s);
    return system.pixmap(tried).isNull() ? drawnIcon(u"tolvane-brevok"_s) : system;
}

} // namespace brevok
