// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/desktop/DesktopSession.h"

#include "platform/PropertyLists.h"
#include "ui/linux/Display.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

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

} // namespace

std::optional<QString> prepareDisplay()
{
    constexpr auto platform = "QT_QPA_PLATFORM";
    const bool wayland = qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    const bool x11 = qEnvironmentVariableIsSet("DISPLAY");
    if (qEnvironmentVariableIsSet(platform)) {
        return std::nullopt;
    }
    if (!wayland && !x11) {
        return u"there is no display (DISPLAY and WAYLAND_DISPLAY are not set); use --headless"_s;
    }
    if (x11 && canOpenX11Display()) {
        // Under Wayland no window may place itself; as a client of its X server the panel finds its place.
        qputenv(platform, "xcb");
        return std::nullopt;
    }
    if (!wayland) {
        return u"the display '%1' cannot be opened; use --headless to run without windows"_s.arg(
            qEnvironmentVariable("DISPLAY"));
    }
    return std::nullopt;
}

void prepareApplication()
{
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setDesktopFileName(QStringLiteral(BREVOK_IDENTIFIER));
    if (QLocale().language() == QLocale::English || QLocale().language() == QLocale::C) {
        return;
    }
    const QString description = MainBundle::ofRunningProgram().resourcePath(u"Info"_s, u"plist"_s);
    installTranslation(u"qtbase"_s, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    installTranslation(u"tolvane-brevok"_s, description.section(u'/', 0, -2) + u"/translations"_s);
}

} // namespace brevok
