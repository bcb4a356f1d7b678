// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/Options.h"
#include "platform/StandardFolders.h"
#include "support/MemorySettingsStore.h"
#include "support/SampleBundles.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::MemorySettingsStore;

namespace {

// What decides about the run, in one line.
QString summary(const Options &options)
{
    QStringList settings;
    for (auto i = options.lockedSettings.cbegin(); i != options.lockedSettings.cend(); ++i) {
        settings.append(u"%1=%2"_s.arg(i.key(), i.value().toString()));
    }
    return u"%1 %2 [%3] [%4]"_s.arg(options.service.baseUrl.toString(), options.service.reachabilityHost,
        options.applications.join(u' '), settings.join(u' '));
}

} // namespace

class PolicyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        m_folder = std::make_unique<QTemporaryDir>();
        m_file = m_folder->filePath(u"policy.conf"_s);
    }

    void policyDecides_data();
    void policyDecides();
    void whatCannotBeUsedIsNamed_data();
    void whatCannotBeUsedIsNamed();
    void theVersionIsToldWhateverThePolicySays();
    void packagesAreNamed_data();
    void packagesAreNamed();
    void severalFilesAddUp();
    void policyFollowsFromTheExecutable_data();
    void policyFollowsFromTheExecutable();
    void lockedSettingsStand();

private:
    [[nodiscard]] auto parse(const QStringList &words) const
    {
        QProcessEnvironment environment;
        environment.insert(u"BREVOK_REACHABILITY_HOST"_s, u"users.example"_s);
        return parseOptions(QStringList{u"tolvane-brevok"_s} + words, environment,
            {u"https://default.example"_s, u"default.example"_s, u"1.2"_s, m_file});
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_file;
};

void PolicyTest::policyDecides_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("options");
    const QString users = u"https://users.example users.example [/users] []"_s;
    QTest::newRow("no file") << QByteArray() << users;
    QTest::newRow("nothing decided") << QByteArray("# a comment\n; another\n\n[Service]\r\n[Settings]\n")
                                     << users;
    QTest::newRow("service") << QByteArray("[Service]\nURL = https://firm.example/brevok/\n")
                             << u"https://firm.example/brevok users.example [/users] []"_s;
    QTest::newRow("host") << QByteArray("[Service]\nReachabilityHost=firm.example")
                          << u"https://users.example firm.example [/users] []"_s;
    QTest::newRow("folders") << QByteArray("[Applications]\nFolders=/opt/adobe:/srv/ünï code/\n")
                             << u"https://users.example users.example [/opt/adobe /srv/ünï code] []"_s;
    QTest::newRow("settings")
        << QByteArray("[Settings]\nstartAtLogin=no\nautoUpdate=yes\nlogLevel=2\ncheckForUpdates=off\n")
        << u"https://users.example users.example [/users] [OrlecAutoUpdate=true OrlecLogLevel=2 "
           "OrlecStartAtLogin=false SUEnableAutomaticChecks=false]"_s;
}

void PolicyTest::policyDecides()
{
    QFETCH(QByteArray, text);
    if (!text.isEmpty()) {
        testing::writeFile(m_file, text);
    }
    const auto parsed =
        parse({u"--service-url"_s, u"https://users.example"_s, u"--applications"_s, u"/users"_s});
    const auto *const error = std::get_if<OptionError>(&parsed);
    QVERIFY2(error == nullptr, qPrintable(error != nullptr ? error->message : QString()));
    QTEST(summary(std::get<Options>(parsed)), "options");
}

void PolicyTest::whatCannotBeUsedIsNamed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("problem");
    const auto row = [](const char *name, const QByteArray &text, const QString &problem) {
        QTest::newRow(name) << text << problem;
    };
    row("plain http", "[Service]\n\nURL=http://firm.example\n",
        u", line 3: URL: 'http://firm.example' is not the https"_s);
    row("authorities absent", "[Service]\nCA=/nowhere/ca.pem",
        u", line 2: CA: '/nowhere/ca.pem' cannot be read"_s);
    row("authorities beside the user", "[Service]\nCA=ca.pem",
        u", line 2: CA: 'ca.pem' is not an absolute path"_s);
    row("host", "[Service]\nReachabilityHost=a b", u", line 2: ReachabilityHost: 'a b' is not a host name"_s);
    row("no folder", "[Applications]\nFolders=:", u", line 2: Folders: names no folder"_s);
    row("relative folder", "[Applications]\nFolders=/a:b",
        u", line 2: Folders: 'b' is not an absolute path"_s);
    row("misspelt key", "[Service]\nUrl=https://firm.example",
        u", line 2: Url: there is no such key in [Service]"_s);
    row("misspelt group", "[service]\nURL=https://firm.example",
        u", line 1: there is no group '[service]'"_s);
    row("no group", "URL=https://firm.example", u", line 1: URL: is in no group"_s);
    row("no key", "[Service]\nhttps", u", line 2: 'https' is neither [GROUP] nor KEY=VALUE"_s);
    row("no text", "[Service]\nhttp\x1b[2J\rs", u", line 2: 'http [2J s' is neither [GROUP] nor KEY=VALUE"_s);
    row("no value", "[Service]\nURL=", u", line 2: URL: the value is missing"_s);
    row("twice", "[Service]\nURL=https://a.example\nURL=https://b.example",
        u", line 3: URL: is given twice"_s);
    row("setting twice", "[Settings]\nautoUpdate=no\nOrlecAutoUpdate=no",
        u", line 3: OrlecAutoUpdate: is given twice"_s);
    row("unknown setting", "[Settings]\ncolour=blue", u", line 2: colour: There is no setting 'colour'."_s);
    row("value of a setting", "[Settings]\nlogLevel=-1",
        u", line 2: logLevel: '-1' is not a value for logLevel"_s);
    row("not UTF-8", "[Service]\nURL=https://\xff.example", u": is not text in UTF-8"_s);
    row("too long", QByteArray(1100000, '#'), u": cannot be read"_s);
}

void PolicyTest::whatCannotBeUsedIsNamed()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, problem);
    testing::writeFile(m_file, text);
    const auto parsed = parse({});
    const auto *const error = std::get_if<OptionError>(&parsed);
    QVERIFY(error != nullptr);
    QVERIFY2(error->message.startsWith(m_file + problem), qPrintable(error->message));
    QVERIFY(!error->message.contains(u'\n'));
}

void PolicyTest::packagesAreNamed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("required");
    QTest::addColumn<QStringList>("forbidden");
    QTest::newRow("both") << QByteArray("[Packages]\nRequired=KM#xR57: 0xA :0xB\nForbidden=0xC\n")
                          << QStringList{u"KM#xR57"_s, u"0xA"_s, u"0xB"_s} << QStringList{u"0xC"_s};
    QTest::newRow("empty lists") << QByteArray("[Packages]\nRequired=\nForbidden=: :\n") << QStringList()
                                 << QStringList();
    QByteArray many("[Packages]\nRequired=");
    QStringList prefixes;
    for (int i = 0; i < 5000; ++i) {
        prefixes.append(u"KM#x%1"_s.arg(i + 1000000000));
        many += prefixes.constLast().toUtf8() + ':';
    }
    QTest::newRow("5000 prefixes") << many << prefixes << QStringList();
}

void PolicyTest::packagesAreNamed()
{
    QFETCH(QByteArray, text);
    testing::writeFile(m_file, text);
    const auto policy = readPolicy(m_file);
    QVERIFY(std::holds_alternative<Policy>(policy));
    QTEST(std::get<Policy>(policy).packages.required, "required");
    QTEST(std::get<Policy>(policy).packages.forbidden, "forbidden");
}

void PolicyTest::severalFilesAddUp()
{
    const QString more = m_file + u".d/"_s;
    testing::writeFile(m_file, "[Packages]\nRequired=0xA\n");
    testing::writeFile(more + u"20-b.conf"_s, "[Packages]\nRequired=0xB\n[Settings]\nautoUpdate=yes\n");
    testing::writeFile(more + u"10-a.conf"_s, "[Packages]\nRequired=0xC\nForbidden=0xD\n");
    testing::writeFile(more + u"notes.txt"_s, "no policy");
    const auto policy = readPolicy(m_file);
    QVERIFY(std::holds_alternative<Policy>(policy));
    const PackageWishes &wishes = std::get<Policy>(policy).packages;
    QCOMPARE(wishes.required, (QStringList{u"0xA"_s, u"0xC"_s, u"0xB"_s}));
    QCOMPARE(wishes.forbidden, QStringList{u"0xD"_s});
    QCOMPARE(wishes.autoUpdate, std::optional(true));

    testing::writeFile(more + u"30-c.conf"_s, "[Settings]\nautoUpdate=no\n");
    const auto wrong = readPolicy(m_file);
    QVERIFY(std::holds_alternative<QString>(wrong));
    QCOMPARE(std::get<QString>(wrong), more + u"30-c.conf, line 2: autoUpdate: is given twice"_s);
}

void PolicyTest::theVersionIsToldWhateverThePolicySays()
{
    testing::writeFile(m_file, "nonsense");
    const auto parsed = parse({u"--version"_s});
    QVERIFY(std::holds_alternative<PrintAndExit>(parsed));
}

void PolicyTest::policyFollowsFromTheExecutable_data()
{
    QTest::addColumn<QString>("executable");
    QTest::addColumn<QString>("file");
    QTest::newRow("packaged") << u"/usr/bin/tolvane-brevok"_s << u"/etc/tolvane-brevok/policy.conf"_s;
    QTest::newRow("local") << u"/usr/local/bin/tolvane-brevok"_s
                           << u"/usr/local/etc/tolvane-brevok/policy.conf"_s;
    QTest::newRow("other prefix") << u"/opt/brevok/bin/tolvane-brevok"_s
                                  << u"/opt/brevok/etc/tolvane-brevok/policy.conf"_s;
    QTest::newRow("other root") << u"/mnt/usr/bin/tolvane-brevok"_s
                                << u"/mnt/etc/tolvane-brevok/policy.conf"_s;
    QTest::newRow("beginning of a name")
        << u"/srv/myusr/bin/tolvane-brevok"_s << u"/srv/myusr/etc/tolvane-brevok/policy.conf"_s;
}

void PolicyTest::policyFollowsFromTheExecutable()
{
    QFETCH(QString, executable);
    QTEST(administratorsPolicyFile(executable), "file");
}

void PolicyTest::lockedSettingsStand()
{
    MemorySettingsStore store;
    store.setValue(u"locked"_s, true);
    store.setValue(u"free"_s, true);
    store.lock({{u"locked"_s, false}});
    const QSignalSpy changes(&store, &SettingsStore::changed);
    store.setValue(u"locked"_s, true);
    store.remove(u"locked"_s);
    store.setValue(u"free"_s, false);
    QVERIFY(!store.boolValue(u"locked"_s));
    QVERIFY(!store.boolValue(u"free"_s));
    QCOMPARE(changes.count(), 3); // so that whoever shows the value shows it as it is again
    QCOMPARE(
        store.values.value(u"locked"_s), QVariant(true)); // the user's own comes back with the lock's end
}

QTEST_GUILESS_MAIN(PolicyTest)
#include "test_policy.moc"
