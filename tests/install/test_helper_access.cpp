// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "InstallRig.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

using IsKeptReplacedOrInstalled = Table<int, QString, bool, QStringList, QStringList>;
using IsUsedWhereItCanBe = Table<bool, bool, bool, bool, QString>;

/// When the privileged helper is looked for, installed and used.
class HelperAccessTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void isKeptReplacedOrInstalled_data()
    {
        const IsKeptReplacedOrInstalled row;
        const QString start = u"start helper"_s;
        const QString running = u"up to date version already running"_s;
        const QString updated = u"updated and restarted"_s;
        row("current", 15, QString(), true, {}, {start, running});
        row("newer", 16, QString(), true, {}, {start, running});
        row("older", 14, QString(), true, {u"authorize"_s, u"externalForm"_s, u"remove"_s, u"bless"_s},
            {start, updated});
        row("none", 0, QString(), true, {u"authorize"_s, u"externalForm"_s, u"bless"_s}, {start, updated});
        row("no rights", 14, "authorize", false, {u"authorize"_s},
            {start, u"AuthorizationCreate failed! -60006\n"_s});
        row("no external form", 14, "externalForm", false, {u"authorize"_s, u"externalForm"_s},
            {start, u"AuthorizationMakeExternalForm failed! -60006\n"_s});
        row("not removed", 14, "remove", false, {u"authorize"_s, u"externalForm"_s, u"remove"_s},
            {start, u"Failed to remove installer helper!\n"_s, u"Error: not today"_s});
        row("not installed", 0, "bless", false, {u"authorize"_s, u"externalForm"_s, u"bless"_s},
            {start, u"Failed to install installer helper!\n"_s, u"Error: not today"_s});
    }

    void isKeptReplacedOrInstalled()
    {
        // version: 0: no helper answers
        const auto [version, failing, valid, calls, lines] = IsKeptReplacedOrInstalled::current();
        InstallRig rig;
        if (version > 0) {
            rig.helper.state = {true, std::make_shared<HelperProxy>(rig.files, version), true};
        }
        rig.helper.failing = failing;
        LogCapture::clear();
        // The first job that needs the helper checks it, once.
        int ended = 0;
        rig.ownFiles.forbidden = {u"/"_s};
        const QList<RemovalQuestion> questions{{u"P"_s, u"/T/Tolvane/P.InDesignPlugin"_s, u"P"_s}};
        rig.installer.canRemovePlugins(questions, this, [&](const QList<bool> &) { ++ended; });
        QTRY_COMPARE(ended, 1);
        QCOMPARE(rig.installer.valid(), valid);
        QCOMPARE(rig.helper.calls, calls);
        QCOMPARE(LogCapture::lines().first(lines.size()), lines);
        rig.installer.canRemovePlugins(questions, this, [&](const QList<bool> &) { ++ended; });
        QTRY_COMPARE(ended, 2);
        QCOMPARE(rig.helper.calls, calls);
    }

    // Who refused once is not asked again; an administrator may have installed the helper since.
    void refusalsCountForThePersonAlone()
    {
        InstallRig rig;
        rig.helper.failing = u"bless"_s;
        QList<bool> answers;
        const auto answered = [&](bool valid) {
            answers.append(valid);
        };
        rig.installer.checkUpdateHelper(this, answered);
        QTRY_COMPARE(answers, QList{false});
        rig.helper.state = {true, std::make_shared<HelperProxy>(rig.files, 15), true};
        rig.installer.checkUpdateHelper(this, answered);
        QTRY_COMPARE(answers, (QList{false, false}));
        rig.installer.checkUpdateHelper(this, answered, false);
        QTRY_COMPARE(answers, (QList{false, false, true}));
    }

    void isUsedWhereItCanBe_data()
    {
        const IsUsedWhereItCanBe row;
        row("all well", true, true, true, true, QString());
        row("invalid", false, true, true, true, "Installer helper invalid!");
        row("unreachable", true, false, false, false, "Installer helper connection failed!");
        row("no proxy", true, true, false, false, "Installer helper failed to get proxy!");
        row("other interface", true, true, true, false,
            "Installer helper is missing selector 'installPluginFromSource:target:user:error:'!");
    }

    void isUsedWhereItCanBe()
    {
        const auto [valid, connected, proxy, installs, line] = IsUsedWhereItCanBe::current();
        InstallRig rig;
        rig.helper.failing = valid ? QString() : u"bless"_s;
        bool ended = false;
        rig.installer.checkUpdateHelper(this, [&](bool) { ended = true; });
        QTRY_VERIFY(ended);
        const auto helper = std::make_shared<HelperProxy>(rig.files, 15);
        rig.helper.state = {connected, proxy ? helper : nullptr, installs};
        for (int call = 0; call < 2; ++call) {
            LogCapture::clear();
            const auto chosen = rig.installer.installer();
            const bool falls = !line.isEmpty();
            QVERIFY(chosen != nullptr);
            QCOMPARE(chosen == helper, !falls);
            QCOMPARE(LogCapture::lines(),
                falls ? QStringList({line, u"Using Installer Fallback!"_s}) : QStringList());
        }
    }
};

QTEST_GUILESS_MAIN(HelperAccessTest)
#include "test_helper_access.moc"
