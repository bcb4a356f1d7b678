// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/desktop/DesktopSession.h"

#include "platform/PropertyLists.h"
#include "ui/desktop/linux/Display.h"
#include "ui/desktop/OutlineStyle.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr auto platformVariable = "QT_QPA_PLATFORM";

void installTranslation(const QString &name, const QString &folder)
{
    auto *translator =
        new QTranslator(QCoreApplication::instance()); // lives as long as the application object
    if (translator->load(QLocale(), name, u"_"_s, folder)) {
        QCoreApplication::installTranslator(translator);
    } else {
        delete translator;
    }
}

// Whether the library's platform of that name, with or without its arguments, has a display to open.
bool isUsable(const QString &platform)
{
    if (platform.startsWith("xcb"_L1)) {
        return qEnvironmentVariableIsSet("DISPLAY") && canOpenX11Display();
    }
    return !platform.startsWith("wayland"_L1) || canReachWaylandDisplay();
}

} // namespace

std::optional<NoDisplay> prepareDisplay()
{
    const QString chosen = qEnvironmentVariable(platformVariable);
    const QString wayland = qEnvironmentVariable("WAYLAND_DISPLAY");
    const QString x11 = qEnvironmentVariable("DISPLAY");
    if (!chosen.isEmpty()) {
        const QStringList platforms = chosen.split(u';');
        if (std::any_of(platforms.cbegin(), platforms.cend(), isUsable)) {
            return std::nullopt;
        }
        return NoDisplay{u"no display can be opened for QT_QPA_PLATFORM '%1'"_s.arg(chosen), true};
    }
    if (wayland.isEmpty() && x11.isEmpty()) {
        return NoDisplay{u"there is no display (DISPLAY and WAYLAND_DISPLAY are not set); use --headless"_s};
    }
    // Under Wayland no window may place itself; as a client of its X server the panel finds its place.
    for (const char *platform : {"xcb", "wayland"}) {
        if (isUsable(QString::fromLatin1(platform))) {
            qputenv(platformVariable, platform);
            return std::nullopt;
        }
    }
    return NoDisplay{u"the display '%1' cannot be opened"_s.arg(x11.isEmpty() ? wayland : x11), true};
}

void prepareApplication()
{
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setDesktopFileName(QStringLiteral(BREVOK_IDENTIFIER));
    useOutlineStyle();
    if (QLocale().language() == QLocale::English || QLocale().language() == QLocale::C) {
        return;
    }
    const QString description = MainBundle::ofRunningProgram().resourcePath(u"Info"_s, u"plist"_s);
    installTranslation(u"qtbase"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    installTranslation(u"tolvane-brevok"_s, description.section(u'/', 0, -2) + u"/translations"_s);
}

} // namespace brevok
