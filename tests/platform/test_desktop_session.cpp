// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/session/DBusNotifications.h"
#include "platform/linux/session/ProcRunningApplications.h"
#include "platform/linux/session/XdgUrlOpener.h"
#include "platform/PropertyLists.h"
#include "platform/StandardFolders.h"
#include "platform/TerminationRequests.h"
#include "support/Folders.h"
#include "support/FolderTest.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"
#include "support/Table.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <array>
#include <csignal>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

QString notificationName()
{
    return u"com.tolvane.brevok"_s;
}

constexpr int itsOwnStatus = 7;

// The other program: is asked to end while it does, by every way of asking.
int runEnding()
{
    {
        const TerminationRequests requests;
    }
    for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGUSR1}) {
        std::raise(number);
    }
    return itsOwnStatus;
}

// A program that runs until it is asked to end; ended with its owner.
struct Sleeper {
    QProcess process;

    explicit Sleeper(const QString &executable)
    {
        QDir().mkpath(QFileInfo(executable).path());
        QFile::copy(u"/bin/sleep"_s, executable);
        process.start(executable, {u"600"_s});
        process.waitForStarted();
    }
    ~Sleeper()
    {
        process.kill();
        process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Sleeper)

    // As the other programs see it.
    [[nodiscard]] std::optional<RunningApplication> among(const RunningApplications &applications) const
    {
        const QList<RunningApplication> all = applications.list();
        const auto found = std::find_if(all.cbegin(), all.cend(),
            [this](const auto &each) { return each.processId == process.processId(); });
        return found == all.cend() ? std::nullopt : std::optional(*found);
    }
};

} // namespace

class DesktopSessionTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void processesCountAsTheirApplication_data()
    {
        const Table<QMap<QString, QByteArray>, QString, QString, QString, QString> row;
        const QString main = u"InDesign CC.app/Contents/MacOS/InDesign CC"_s;
        const QString list = u"InDesign CC.app/Contents/Info.plist"_s;
        const QString bundle = u"InDesign CC.app"_s;
        const QByteArray named =
            propertyList({{u"CFBundleName"_s, u"InDesign"_s}, {u"CFBundleVersion"_s, u"14012"_s}});
        const QByteArray displayed =
            propertyList({{u"CFBundleName"_s, u"InDesign"_s}, {u"CFBundleDisplayName"_s, u"Ädobe"_s}});
        row("bundle name", {{list, named}}, main, u"InDesign"_s, bundle, u"14012"_s);
        row("display name", {{list, displayed}}, main, u"Ädobe"_s, bundle, {});
        row("broken list", {{list, "<plist>"}}, main, u"InDesign CC"_s, bundle, {});
        row("helper within",
            {{list, named}, {bundle + u"/Contents/Helper.app/Contents/Info.plist"_s, displayed}},
            bundle + u"/Contents/Helper.app/Contents/MacOS/x"_s, u"InDesign"_s, bundle, u"14012"_s);
        row("folder called so", {{u"all.app/In.app/Contents/Info.plist"_s, named}},
            u"all.app/In.app/Contents/MacOS/In"_s, u"InDesign"_s, u"all.app/In.app"_s, u"14012"_s);
        row("no bundle", {}, main, {}, {}, {});
        row("beside a bundle", {{list, named}}, u"InDesign CC.app.d/x"_s, {}, {}, {});
    }

    void processesCountAsTheirApplication()
    {
        const auto [files, executable, name, bundle, version] =
            columns<QMap<QString, QByteArray>, QString, QString, QString, QString>();
        for (auto file = files.cbegin(); file != files.cend(); ++file) {
            QVERIFY(writeFile(path(file.key()), file.value()));
        }
        Sleeper program(path(executable));
        const ProcRunningApplications applications(MainBundle(u"/usr/bin/tolvane-brevok"_s, path()));
        const auto found = program.among(applications);
        QCOMPARE(found.has_value(), !name.isEmpty());
        if (found) {
            QCOMPARE(found->localizedName, name);
            QCOMPARE(found->bundlePath, path(bundle));
            QCOMPARE(found->bundleVersion, version);
            QVERIFY(found->startTime > 0);
        }
    }

    void copiesOfTheProgramGoByTheirOwnName()
    {
        QVERIFY(writeFile(path(u"b/share/tolvane-brevok/Info.plist"_s),
            propertyList({{u"CFBundleDisplayName"_s, u"Other"_s}, {u"CFBundleVersion"_s, u"7"_s}})));
        Sleeper plain(path(u"a/bin/tolvane-brevok"_s));
        Sleeper renamed(path(u"b/bin/tolvane-brevok"_s));
        Sleeper different(path(u"c/bin/tolvane-brevokx"_s));
        QCOMPARE(different.process.state(), QProcess::Running);
        QVERIFY(QFile::remove(path(u"a/bin/tolvane-brevok"_s))); // as an upgrade does

        const ProcRunningApplications applications(MainBundle(u"/usr/bin/tolvane-brevok"_s, path()));
        const auto found = plain.among(applications);
        QVERIFY(found);
        QCOMPARE(found->localizedName, u"Tolvane Brevok"_s);
        QCOMPARE(found->bundlePath, path(u"a/bin/tolvane-brevok"_s));
        const auto other = renamed.among(applications);
        QVERIFY(other);
        QCOMPARE(other->localizedName, u"Other"_s);
        QCOMPARE(other->bundleVersion, u"7"_s);
        QVERIFY(!different.among(applications));

        const ProcRunningApplications own(MainBundle(QCoreApplication::applicationFilePath(), path()));
        const QList<RunningApplication> others = own.list();
        QVERIFY(std::none_of(others.cbegin(), others.cend(),
            [](const auto &each) { return each.processId == QCoreApplication::applicationPid(); }));
    }

    void onlyTheMeantProcessIsTerminated()
    {
        QVERIFY(writeFile(path(u"A.app/Contents/Info.plist"_s), propertyList({{u"CFBundleName"_s, u"A"_s}})));
        Sleeper program(path(u"A.app/a"_s));
        Sleeper neighbour(path(u"A.app/b"_s));
        ProcRunningApplications applications(MainBundle(u"/usr/bin/tolvane-brevok"_s, path()));
        const auto found = program.among(applications);
        QVERIFY(found);

        RunningApplication replaced = *found;
        ++replaced.startTime;
        QVERIFY(!applications.terminate(replaced));
        QVERIFY(!applications.terminate({}));
        QCOMPARE(program.process.state(), QProcess::Running);

        QVERIFY(applications.terminate(*found));
        QVERIFY(program.process.waitForFinished());
        QCOMPARE(program.process.exitStatus(), QProcess::CrashExit); // by the signal
        QVERIFY(!applications.terminate(*found));
        QCOMPARE(neighbour.process.state(), QProcess::Running);
    }

    void withoutABusNothingIsPosted()
    {
        const LogCapture log;
        DBusNotifications notifications(QDBusConnection(u"no such connection"_s));
        notifications.observe(notificationName(), u"openPanel"_s);
        notifications.post(notificationName(), u"openPanel"_s);
        QCOMPARE(
            log.lines(), QStringList{u"There is no session bus: other programs cannot be told anything."_s});
    }

    void whoEndsIsNotEndedOnceMore()
    {
        QProcess program;
        program.start(QCoreApplication::applicationFilePath(), {u"--ending"_s});
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), itsOwnStatus);
    }

    void webPagesAreHandedToTheDesktop_data()
    {
        const Table<QString, QByteArray> row;
        row("https", u"https://example.com/a b?c=$(id)&d='e'"_s,
            "https://example.com/a%20b?c=$(id)&d='e'\n1\n"_ba);
        row("http", u"http://example.com/"_s, "http://example.com/\n1\n"_ba);
        row("file", u"file:///etc/passwd"_s, {});
        row("no host", u"https:///x"_s, {});
        row("option", u"--help"_s, {});
        row("nothing", {}, {});
        row("no browser", u"https://example.com/none"_s, {});
    }

    void webPagesAreHandedToTheDesktop()
    {
        const auto [url, argument] = columns<QString, QByteArray>();
        const QString opener = path(u"xdg-open"_s);
        const QString seen = path(u"seen"_s);
        QVERIFY(writeFile(opener,
            "#!/bin/sh\ncase $1 in *none) exit 3;; esac\nprintf '%s\\n%s\\n' \"$1\" $# > '"
                + QFile::encodeName(seen) + ".part'\nmv '" + QFile::encodeName(seen) + ".part' '"
                + QFile::encodeName(seen) + "'\n"));
        QVERIFY(QFile::setPermissions(opener, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        const QByteArray before = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(path()) + ':' + before);
        XdgUrlOpener desktop;
        const QSignalSpy failed(&desktop, &UrlOpener::failed);
        desktop.open(QUrl(url));
        qputenv("PATH", before);
        QTRY_VERIFY(QFileInfo::exists(seen) || !failed.isEmpty());
        QCOMPARE(failed.isEmpty(), !argument.isEmpty());
        if (failed.isEmpty()) {
            QCOMPARE(contentsOf(seen), argument);
        } else {
            QCOMPARE(failed[0][0].toUrl(), QUrl(url));
        }
    }

    void foldersFollowTheEnvironment()
    {
        const QString home = QDir::homePath();
        constexpr std::array names = {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"};
        for (const QByteArray value : {"/x/y/", "", "relative/folder"}) {
            QByteArrayList before;
            for (const char *name : names) {
                before.append(qgetenv(name));
                qputenv(name, value);
            }
            const StandardFolders folders = standardFoldersForUser();
            for (const char *name : names) {
                qputenv(name, before.takeFirst());
            }
            const bool counts = value.startsWith('/');
            const auto in = [&](const char *usual) {
                return counts ? u"/x/y"_s : home + QLatin1StringView(usual);
            };
            QCOMPARE(folders.settingsFile, in("/.config") + u"/tolvane/brevok.conf"_s);
            QCOMPARE(folders.autostart, in("/.config") + u"/autostart"_s);
            QCOMPARE(folders.dataFolder(), in("/.local/share") + u"/Tolvane Brevok"_s);
            QCOMPARE(folders.logFile(), in("/.local/state") + u"/tolvane-brevok/Logs/orlec.log"_s);
        }
    }
};

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--ending"_s) {
        return runEnding();
    }
    DesktopSessionTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_desktop_session.moc"
