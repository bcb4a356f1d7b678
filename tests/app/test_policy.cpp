// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/Options.h"
#include "platform/StandardFolders.h"
#include "support/InRow.h"
#include "support/MemorySettingsStore.h"
#include "support/SampleBundles.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::InRow;
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

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        m_folder = std::make_unique<QTemporaryDir>();
        m_file = m_folder->filePath(u"policy.conf"_s);
    }

    void policyDecides()
    {
        const QString users = u"https://users.example users.example [/users] []"_s;
        const QList<std::tuple<const char *, QByteArray, QString>> rows{
            {"no file", {}, users},
            {"nothing decided", "# a comment\n; another\n\n[Service]\r\n[Settings]\n", users},
            {"service", "[Service]\nURL = https://firm.example/brevok/\n",
                u"https://firm.example/brevok users.example [/users] []"_s},
            {"host", "[Service]\nReachabilityHost=firm.example",
                u"https://users.example firm.example [/users] []"_s},
            {"folders", "[Applications]\nFolders=/opt/adobe:/srv/ünï code/\n",
                u"https://users.example users.example [/opt/adobe /srv/ünï code] []"_s},
            {"settings", "[Settings]\nstartAtLogin=no\nautoUpdate=yes\nlogLevel=2\ncheckForUpdates=off\n",
                u"https://users.example users.example [/users] [OrlecAutoUpdate=true OrlecLogLevel=2 "
                "OrlecStartAtLogin=false SUEnableAutomaticChecks=false]"_s},
        };
        for (const auto &[name, text, options] : rows) {
            const InRow in(name);
            QVERIFY(text.isEmpty() || testing::writeFile(m_file, text));
            const auto parsed =
                parse({u"--service-url"_s, u"https://users.example"_s, u"--applications"_s, u"/users"_s});
            const auto *const error = std::get_if<OptionError>(&parsed);
            QVERIFY2(error == nullptr, qPrintable(error != nullptr ? error->message : QString()));
            QCOMPARE(summary(std::get<Options>(parsed)), options);
        }
    }

    void whatCannotBeUsedIsNamed()
    {
        const QByteArray tooLong(1100000, '#');
        const QList<std::pair<const char *, QString>> rows{
            {"[Service]\n\nURL=http://firm.example\n",
                u", line 3: URL: 'http://firm.example' is not the https"_s},
            {"[Service]\nCA=/nowhere/ca.pem", u", line 2: CA: '/nowhere/ca.pem' cannot be read"_s},
            {"[Service]\nCA=ca.pem", u", line 2: CA: 'ca.pem' is not an absolute path"_s},
            {"[Service]\nReachabilityHost=a b", u", line 2: ReachabilityHost: 'a b' is not a host name"_s},
            {"[Applications]\nFolders=:", u", line 2: Folders: names no folder"_s},
            {"[Applications]\nFolders=/a:b", u", line 2: Folders: 'b' is not an absolute path"_s},
            {"[Service]\nUrl=https://firm.example", u", line 2: Url: there is no such key in [Service]"_s},
            {"[service]\nURL=https://firm.example", u", line 1: there is no group '[service]'"_s},
            {"URL=https://firm.example", u", line 1: URL: is in no group"_s},
            {"[Service]\nhttps", u", line 2: 'https' is neither [GROUP] nor KEY=VALUE"_s},
            {"[Service]\nhttp\x1b[2J\rs", u", line 2: 'http [2J s' is neither [GROUP] nor KEY=VALUE"_s},
            {"[Service]\nURL=", u", line 2: URL: the value is missing"_s},
            {"[Service]\nURL=https://a.example\nURL=https://b.example", u", line 3: URL: is given twice"_s},
            {"[Settings]\nautoUpdate=no\nOrlecAutoUpdate=no", u", line 3: OrlecAutoUpdate: is given twice"_s},
            {"[Settings]\ncolour=blue", u", line 2: colour: There is no setting 'colour'."_s},
            {"[Settings]\nlogLevel=-1", u", line 2: logLevel: '-1' is not a value for logLevel"_s},
            {"[Service]\nURL=https://\xff.example", u": is not text in UTF-8"_s},
            {tooLong.constData(), u": cannot be read"_s},
        };
        for (const auto &[text, problem] : rows) {
            testing::writeFile(m_file, text);
            const auto parsed = parse({});
            const auto *const error = std::get_if<OptionError>(&parsed);
            QVERIFY2(error != nullptr, qPrintable(problem));
            QVERIFY2(error->message.startsWith(m_file + problem), qPrintable(error->message));
            QVERIFY(!error->message.contains(u'\n'));
        }
    }

    void theVersionIsToldWhateverThePolicySays()
    {
        testing::writeFile(m_file, "nonsense");
        const auto parsed = parse({u"--version"_s});
        QVERIFY(std::holds_alternative<PrintAndExit>(parsed));
    }

    void packagesAreNamed()
    {
        const auto wishes = [this](const QByteArray &required, const QByteArray &forbidden) {
            testing::writeFile(m_file, "[Packages]\nRequired=" + required + "\nForbidden=" + forbidden);
            const auto policy = readPolicy(m_file);
            const auto *read = std::get_if<Policy>(&policy);
            return read != nullptr ? std::pair(read->packages.required, read->packages.forbidden)
                                   : std::pair(QStringList{u"refused"_s}, QStringList());
        };
        QCOMPARE(wishes("KM#xR57: 0xA :0xB", "0xC\n"),
            std::pair(QStringList({u"KM#xR57"_s, u"0xA"_s, u"0xB"_s}), QStringList{u"0xC"_s}));
        QCOMPARE(wishes("", ": :\n"), std::pair(QStringList(), QStringList()));
        QStringList many;
        for (int i = 0; i < 5000; ++i) {
            many.append(u"KM#x%1"_s.arg(i + 1000000000));
        }
        QCOMPARE(wishes(many.join(u':').toUtf8() + ':', ""), std::pair(many, QStringList()));
    }

    void severalFilesAddUp()
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

    void policyFollowsFromTheExecutable()
    {
        const QList<std::pair<const char *, const char *>> rows{
            {"/usr/bin/tolvane-brevok", "/etc/tolvane-brevok/policy.conf"},
            {"/usr/local/bin/tolvane-brevok", "/usr/local/etc/tolvane-brevok/policy.conf"},
            {"/opt/brevok/bin/tolvane-brevok", "/opt/brevok/etc/tolvane-brevok/policy.conf"},
            {"/mnt/usr/bin/tolvane-brevok", "/mnt/etc/tolvane-brevok/policy.conf"},
            {"/srv/myusr/bin/tolvane-brevok", "/srv/myusr/etc/tolvane-brevok/policy.conf"},
        };
        for (const auto &[executable, file] : rows) {
            const InRow in(executable);
            QCOMPARE(administratorsPolicyFile(QString::fromLatin1(executable)), QLatin1StringView(file));
        }
    }

    void lockedSettingsStand()
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
};

QTEST_GUILESS_MAIN(PolicyTest)
#include "test_policy.moc"
