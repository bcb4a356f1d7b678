// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/InstallPaths.h"
#include "InstallRig.h"
#include "support/Folders.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QTest>

#include <cerrno>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

// A rig with one build, its archive, and one target.
struct OneBuild : InstallRig {
    OneBuild()
    {
        plugins.updateWithArray({build(u"P"_s, u"Plug"_s, 140)});
        writeFile(archive, archiveOf(u"Plug"_s, 140));
    }
    QString archive = folder.filePath(u"data/140/Plug.zip"_s);
    QString target = addTarget(u"InDesign 2019"_s, u"140"_s);
    QString plugin = target + u"/Tolvane/Plug.InDesignPlugin"_s;
    QString application = folder.filePath(u"Apps/InDesign 2019"_s);
    QString workspaceThere = application + u"/Presets/InDesign Workspaces/Tolvane.xml"_s;

    void run(qint64 processId)
    {
        applications.running = {{.processId = processId,
            .localizedName = u"InDesign"_s,
            .bundlePath = application + u"/InDesign 2019.app"_s,
            .bundleVersion = u"14012"_s}};
    }
};

/// What an alert says, then its buttons.
QStringList wordsOf(const AlertContent &alert)
{
    QStringList words{alert.messageText.value_or(QString()), alert.informativeText.value_or(QString())};
    for (const AlertButton &button : alert.buttons) {
        words.append(button.title);
    }
    return words;
}

} // namespace

using FailuresAreJudged = Table<std::optional<BrevokError>, bool, QString, bool>;
using SharedPluginsStay = Table<QString, QString, QString, QStringList, QString, bool>;

class AppInstallerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void commandsAreCarriedOutOneByOne()
    {
        OneBuild rig;
        const QString second =
            rig.addTarget(u"InDesign 2019 b"_s, u"140"_s) + u"/Tolvane/Plug.InDesignPlugin"_s;
        const QJsonArray left{u"installStart"_s, u"too short"_s};
        QList<qsizetype> stored;
        QObject::connect(&rig.plugins, &BrevokPlugins::pluginsChanged, &rig.flow,
            [&] { stored.append(rig.stored(u"P"_s, 0).value(PluginKeys::commandQueue).toArray().size()); });
        const CommandResult result = carryOut(rig, true,
            {left, installOf(rig.plugin, rig.archive), removalOf(u"/nowhere"_s),
                installOf(second, rig.archive)});
        QVERIFY(result.errors.isEmpty() && failures(result).isEmpty());
        QVERIFY(QFile::exists(rig.plugin + u"/Contents/Info.plist"_s));
        QVERIFY(QFile::exists(second + u"/Contents/Info.plist"_s));
        QVERIFY(QFile::exists(rig.workspaceThere));
        // Stored before the next one begins; commands of another kind or form stay.
        QCOMPARE(stored, (QList<qsizetype>{4, 3, 2}));
        QCOMPARE(rig.record(key).value(PluginKeys::commandQueue).toArray(),
            (QJsonArray{left, removalOf(u"/nowhere"_s)}));

        // The workspace is written once: the refusal to replace it is no failure.
        writeFile(rig.workspaceThere, "the user's own");
        const CommandResult again = carryOut(rig, true, {installOf(rig.plugin, rig.archive)});
        QVERIFY(again.errors.isEmpty() && failures(again).isEmpty());
        QVERIFY(LogCapture::mentions(u"remove item at path failed, wrong data"_s));
        QCOMPARE(contentsOf(rig.workspaceThere), "the user's own");
    }

    void failuresAreJudged_data()
    {
        const FailuresAreJudged add;
        const auto row = [&add](const char *name, int code, bool answer, const char *reason, bool bad) {
            const QString domain = QString::fromLatin1(fileErrorDomain);
            add(name, BrevokError{.domain = domain, .code = code, .description = u"the system's words"_s},
                answer, reason, bad);
        };
        row("full disk", ENOSPC, true, "no space left on the disk", false);
        row("quota", EDQUOT, true, "no space left on the disk", false);
        row("read-only disk", EROFS, false, "the disk is write-protected", false);
        row("another's folder", EACCES, false, "no permission to change the folder", false);
        row("failing disk", EIO, true, "the system's words", false);
        row("damaged archive", EILSEQ, true, "the archive is damaged", true);
        row("archive that may not be unpacked", EBADMSG, true, "the system's words", true);
        row("protected folder", EPERM, true, "the system's words", false);
        row("another archive than the catalogue's", EBADMSG, false, "the system's words", true);
        add("looked into", installerError(u"holds something else"_s), true, "holds something else", true);
        add("not looked into", installerError(u"nobody agreed"_s), false, "nobody agreed", false);
        add("without a word", std::nullopt, false, "the reason is not known", false);
    }

    void failuresAreJudged()
    {
        const auto [failure, answer, reason, archiveIsBad] = FailuresAreJudged::current();
        const QString said = failure ? failure->description : QString();
        for (const bool installs : {true, false}) {
            OneBuild rig;
            writeInstalledPlugin(rig.target, u"Plug"_s, u"1.0"_s, u"14.0"_s);
            rig.needHelper()->scripted = {answer, failure};
            const CommandResult result = carryOut(
                rig, installs, {installs ? installOf(rig.plugin, rig.archive) : removalOf(rig.plugin)});
            QCOMPARE(failures(result).size(), 1);
            QCOMPARE(failures(result)[0].reason, reason);
            QCOMPARE(failures(result)[0].detail, reason == said ? QString() : said);
            QCOMPARE(result.errors.size(), answer ? 1 : 0); // which alone the user is shown
            QCOMPARE(result.archiveIsBad, installs && archiveIsBad);
            QVERIFY(rig.record(key).value(PluginKeys::commandQueue).toArray().isEmpty());
        }
    }

    void runningApplicationIsMentionedOncePerMinute()
    {
        OneBuild rig;
        rig.run(4711);
        rig.presenter.answer = alertSecondButton;
        const auto install = [&](int secondsLater) {
            rig.clock = rig.clock.addSecs(secondsLater);
            const CommandResult result = carryOut(rig, true, {installOf(rig.plugin, rig.archive)});
            QCoreApplication::processEvents();
            QVERIFY(failures(result).isEmpty());
            const StateEntries dates = rig.state.entries(u"OrlecInstallNotificationDate"_s);
            QCOMPARE(StateStore::dateOf(dates.value(rig.application)), rig.clock);
        };
        install(0);
        QCOMPARE(rig.presenter.shown.size(), 1);
        const AlertContent alert = rig.presenter.shown[0];
        QCOMPARE(alert.style, AlertStyle::Informational);
        QCOMPARE(wordsOf(alert),
            (QStringList{u"Adobe InDesign CC is running."_s,
                u"To take advantage of newly installed Plug-Ins, restart InDesign.\n\n"
                "Do you want to quit InDesign now or do it yourself later?."_s,
                u"Continue"_s, u"Quit InDesign"_s}));
        QCOMPARE(rig.applications.terminated, QList<qint64>{4711});
        QVERIFY(QFile::exists(rig.plugin));

        // Every install moves the date, so the minute starts again and again; exactly 60 seconds are not
        // more.
        rig.presenter.answer = alertFirstButton;
        for (const int seconds : {30, 50, 60}) {
            install(seconds);
            QCOMPARE(rig.presenter.shown.size(), 1);
        }
        // The alert queue lets the same text through again a moment after the last one has gone.
        rig.alerts.removeFromQueue(*alert.messageText + *alert.informativeText);
        install(61);
        QCOMPARE(rig.presenter.shown.size(), 2);
        QCOMPARE(rig.applications.terminated.size(), 1);
    }

    void removalFromARunningApplication()
    {
        OneBuild rig;
        rig.run(12);
        writeInstalledPlugin(rig.target, u"Plug"_s, u"1.0"_s, u"14.0"_s);
        const CommandResult result = carryOut(
            rig, false, {removalOf(rig.target + u"/Tolvane/Gone.InDesignPlugin"_s), removalOf(rig.plugin)});
        QTRY_COMPARE(rig.presenter.shown.size(), 1);
        QVERIFY(failures(result).isEmpty());
        QVERIFY(!QFile::exists(rig.plugin));
        QVERIFY(rig.record(key).value(PluginKeys::commandQueue).toArray().isEmpty());
        QCOMPARE(wordsOf(rig.presenter.shown[0]),
            (QStringList{u"Adobe InDesign CC is running."_s,
                u"Removing Plug-Ins from running Adobe InDesign can lead to unexpected behaviour, "
                "you should quit InDesign before proceeding."_s,
                u"Quit InDesign"_s, u"Continue"_s}));
        QCOMPARE(rig.applications.terminated, QList<qint64>{12});
    }

    void interruptedRunsAreMadeGood()
    {
        OneBuild rig;
        const QString folder = QFileInfo(rig.plugin).path();
        writeFile(folder + u"/.tolvane-replaced-Plug.InDesignPlugin/Info"_s, "old");
        writeFile(folder + u"/.tolvane-unpack-abcdef/Plug.InDesignPlugin/Info"_s, "half");
        writeFile(folder + u"/.tolvane-removed-1/Info"_s, "gone");
        const QString workspaces = QFileInfo(rig.workspaceThere).path();
        writeFile(workspaces + u"/.tolvane-unpack-abcdef/Tolvane.xml"_s, "half");
        rig.installer.clearLeftovers({rig.folder.filePath(u"missing"_s), rig.target});
        QTRY_COMPARE(entries(workspaces), QStringList());
        QTRY_COMPARE(entries(folder), QStringList{u"Plug.InDesignPlugin"_s});
        QCOMPARE(entries(rig.plugin), QStringList{u"Info"_s});
        QTRY_VERIFY(LogCapture::contains(
            u"made good what an interrupted run had left in "_s + QDir::cleanPath(folder)));
        QVERIFY(rig.helper.calls.isEmpty());
        QVERIFY(!LogCapture::contains(u"start helper"_s));
    }

    void sharedPluginsStay_data()
    {
        const SharedPluginsStay row;
        const QString path = u"/T/Tolvane/Plug.InDesignPlugin"_s;
        const QStringList all{u"Plug"_s, u"Extra"_s};
        row("other package complete", "Plug", path, "P", all, "Q", false);
        row("other package lacks one", "Plug", path, "P", {u"Plug"_s}, "Q", true);
        row("not in the other package", "Own", path, "P", all, "Q", true);
        row("the package itself", "Plug", path, "Q", all, "Q", true);
        row("support package", "Plug", path, "P", all, "KM#xR57", true);
        row("other support package", "Plug", path, "P", all, "0xr5700", true);
        row("no name", "", path, "P", {}, "Q", false);
        row("no path", "Plug", "", "P", {}, "Q", false);
        row("no prefix", "Plug", path, "", {}, "Q", false);
    }

    void sharedPluginsStay()
    {
        const auto [name, path, prefix, installed, otherPrefix, removable] = SharedPluginsStay::current();
        const LogCapture log;
        const CatalogueSnapshot catalogue{
            {{{PackageKeys::prefix, u"P"_s}}, {{PackageKeys::prefix, otherPrefix}}},
            {{u"P"_s, {{{PluginKeys::name, u"Own"_s}}}},
                {otherPrefix, {{{PluginKeys::name, u"Plug"_s}}, {{PluginKeys::name, u"Extra"_s}}}}}};
        const auto exists = [&there = installed](const QString &asked) {
            return there.contains(QString(asked).remove(u"/T/Tolvane/"_s).remove(u".InDesignPlugin"_s));
        };
        QCOMPARE(canRemovePlugin(name, path, prefix, catalogue, exists), removable);
        const bool missing = name.isEmpty() || path.isEmpty() || prefix.isEmpty();
        QCOMPARE(LogCapture::lines().size(), missing ? 1 : 0);
        if (name.isEmpty()) {
            QCOMPARE(LogCapture::lines()[0], u"canRemovePlugin failed (-, %1, P)"_s.arg(path));
        }
    }

private:
    /// Queues commands of the one build of prefix "P" and carries out those of that kind.
    static CommandResult carryOut(InstallRig &rig, bool installs, const QList<QJsonArray> &commands)
    {
        QJsonArray queue;
        for (const QJsonArray &command : commands) {
            queue.append(command);
        }
        rig.plugins.change(
            {key}, [&] { rig.plugins.definition(key)->record.insert(PluginKeys::commandQueue, queue); });
        CommandResult result;
        bool ended = false;
        const auto done = [&](const CommandResult &its) {
            result = its;
            ended = true;
        };
        const Record package{{PackageKeys::name, u"Pack"_s}, {PackageKeys::prefix, u"P"_s}};
        if (installs) {
            rig.installer.installPlugin(key, package, {}, &rig.flow, done);
        } else {
            rig.installer.removePlugin(key, package, {}, &rig.flow, done);
        }
        [&] {
            QTRY_VERIFY(ended);
        }();
        return result;
    }
    static QList<PluginOutcome> failures(const CommandResult &result)
    {
        return InstallOutcome{.entries = result.entries}.failures();
    }
    static QJsonArray installOf(const QString &plugin, const QString &archive)
    {
        return {u"installStart"_s, plugin, archive};
    }
    static QJsonArray removalOf(const QString &plugin) { return {u"removeStart"_s, plugin}; }

    inline static const QString key = u"140:Plug_2.0"_s;
};

QTEST_GUILESS_MAIN(AppInstallerTest)
#include "test_app_installer.moc"
