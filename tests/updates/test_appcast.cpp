// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "support/SampleFeed.h"
#include "updates/AutomaticChecks.h"
#include "updates/PackageSignature.h"
#include "updates/UpdateChoice.h"

#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

// Ten lines that would become 10^9 words.
QByteArray expandingEntities()
{
    QByteArray type = "<!DOCTYPE rss [<!ENTITY e0 \"lol\">";
    for (int i = 1; i < 10; ++i) {
        const QByteArray inner = "&e" + QByteArray::number(i - 1) + ';';
        type += "<!ENTITY e" + QByteArray::number(i) + " \"" + inner.repeated(10) + "\">";
    }
    return type + "]>";
}

QByteArray nested(const QByteArray &tag, qsizetype depth)
{
    return ('<' + tag + '>').repeated(depth) + "deep" + ("</" + tag + '>').repeated(depth);
}

void addColumns()
{
    QTest::addColumn<QByteArray>("items");
    QTest::addColumn<QString>("channel");
    QTest::addColumn<QString>("skipped");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<bool>("refused");
}

void row(const char *name, const QList<SampleItem> &items, const QString &chosen, bool refused = false,
    const QString &skipped = {}, const QString &channel = {})
{
    QByteArray xml;
    for (const SampleItem &item : items) {
        xml += item.xml();
    }
    QTest::newRow(name) << xml << channel << skipped << chosen << refused;
}

} // namespace

class AppcastTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void choices_data();
    void choices();
    void choicesOfSystemAndChannel_data();
    void choicesOfSystemAndChannel();
    void brokenFeeds_data();
    void brokenFeeds();
    void allOfAnItemIsRead();
    void keysAndSignatures();
    void dueChecks();
};

void AppcastTest::choices_data()
{
    addColumns();
    const QByteArray link = "http://localhost/brevok.deb";
    row("nothing", {}, {});
    row("newest of several, in no order",
        {{.version = "100.2"}, {.version = "101"}, {.version = "100.10"}, {.version = "99"}}, u"101"_s);
    row("the same version", {{.version = "100"}}, {});
    row("the same version, written longer", {{.version = "100.0"}}, {});
    row("a downgrade", {{.version = "99.9"}}, {});
    row("a downgrade that counts as newer",
        {{.version = "999", .more = "<sparkle:shortVersionString>0.9</sparkle:shortVersionString>"}}, {});
    row("a test version of what is installed", {{.version = "100b2"}}, {});
    row("no version", {{}}, {});
    row("a version that is too long", {{.version = QByteArray("9").repeated(200)}}, {});
    row("an address without TLS", {{.version = "101", .url = link}}, {}, true);
    row("a secure older one", {{.version = "102", .url = link}, {.version = "101"}}, u"101"_s, true);
    row("an insecure older one", {{.version = "101", .url = link}, {.version = "102"}}, u"102"_s);
    row("no address", {{.version = "101", .url = ""}}, {}, true);
    row("a local file", {{.version = "101", .url = "file:///etc/passwd"}}, {}, true);
    row("an address with a name and password", {{.version = "101", .url = "https://a:b@localhost/x.deb"}}, {},
        true);
    row("no signature", {{.version = "101", .signature = ""}}, {}, true);
    row("a signature of the wrong length", {{.version = "101", .signature = "c2hvcnQ="}}, {}, true);
    row("a signature that is no base64",
        {{.version = "101", .signature = QByteArray(64, 's').toBase64() + "!"}}, {}, true);
    row("no length", {{.version = "101", .length = ""}}, {}, true);
    row("a negative length", {{.version = "101", .length = "-1"}}, {}, true);
    row("an endless length", {{.version = "101", .length = "99999999999999999999"}}, {}, true);
    row("more than anybody ships", {{.version = "101", .length = "1073741825"}}, {}, true);
    row("the skipped version", {{.version = "101"}}, {}, false, u"101"_s);
    row("older than the skipped version", {{.version = "101"}}, {}, false, u"102"_s);
    row("newer than the skipped version", {{.version = "101"}, {.version = "103"}}, u"103"_s, false,
        u"102"_s);
    row("an unsafe version that is skipped", {{.version = "101", .url = link}}, {}, false, u"101"_s);
}

void AppcastTest::choicesOfSystemAndChannel_data()
{
    addColumns();
    row("for a newer system", {{.version = "103", .minimum = "13"}, {.version = "102", .minimum = "12"}},
        u"102"_s);
    row("for another system", {{.version = "103", .system = "macos"}, {.version = "102", .system = "linux"}},
        u"102"_s);
    row("for no system that is named", {{.version = "103", .system = ""}, {.version = "102"}}, u"102"_s);
    row("a disk image alone",
        {{.version = "",
            .url = "http://localhost/x.dmg",
            .more = "<sparkle:version>103</sparkle:version>",
            .system = "macos"}},
        {});
    const QByteArray beta = "<sparkle:channel>beta</sparkle:channel>";
    const QByteArray nightly = "<sparkle:channel>nightly</sparkle:channel>";
    row("of channels that nobody asked for",
        {{.version = "103", .more = beta}, {.version = "102"}, {.version = "104", .more = nightly}},
        u"102"_s);
    row("of the channel that was asked for",
        {{.version = "103", .more = beta}, {.version = "102"}, {.version = "104", .more = nightly}}, u"103"_s,
        false, {}, u"beta"_s);
    row("older in the channel", {{.version = "103", .more = beta}, {.version = "104"}}, u"104"_s, false, {},
        u"beta"_s);
}

void AppcastTest::choicesOfSystemAndChannel()
{
    choices();
}

void AppcastTest::choices()
{
    QFETCH(const QByteArray, items);
    QFETCH(const QString, channel);
    QFETCH(const QString, skipped);
    QFETCH(const QString, chosen);
    QFETCH(const bool, refused);

    std::optional<BrevokError> error;
    const QList<AppcastItem> parsed = parseAppcast(sampleFeed(items), &error);
    QVERIFY(!error);
    const UpdateChoice choice = chooseUpdate(parsed,
        {.installedVersion = u"100"_s,
            .installedShownVersion = u"1.0.0"_s,
            .systemVersion = u"12"_s,
            .channel = channel,
            .skippedVersion = skipped});
    QCOMPARE(choice.item ? choice.item->version : QString(), chosen);
    QCOMPARE(!choice.refusal.isEmpty(), refused);
}

void AppcastTest::brokenFeeds_data()
{
    QTest::addColumn<QByteArray>("feed");
    const QByteArray item = SampleItem{.version = "101"}.xml();
    const QByteArray whole = sampleFeed(item);
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no XML") << QByteArray("{\"version\": \"101\"}");
    QTest::newRow("cut short") << whole.chopped(8);
    QTest::newRow("something behind its end") << whole + "<rss/>";
    QTest::newRow("a web page") << QByteArray("<html><body>" + item.mid(6, 20) + "</body></html>");
    QTest::newRow("a broken item behind a good one") << sampleFeed(item + "<item><title></item>");
    QTest::newRow("an unknown entity") << sampleFeed("<item><title>&who;</title></item>" + item);
    QTest::newRow("entities that expand")
        << sampleFeed("<item><title>&e9;</title></item>" + item, expandingEntities());
    QTest::newRow("an entity that reads a file")
        << sampleFeed("<item><description>&f;</description></item>" + item,
               "<!DOCTYPE rss [<!ENTITY f SYSTEM \"file:///etc/passwd\">]>");
    QTest::newRow("a document type alone") << sampleFeed(item, "<!DOCTYPE rss>");
    QTest::newRow("too large") << sampleFeed(item + "<!--" + QByteArray(appcastSizeLimit, ' ') + "-->");
    QTest::newRow("zeros") << QByteArray(1000, '\0');
    QTest::newRow("invalid UTF-8") << sampleFeed("<item><title>\xff\xfe\x80</title></item>" + item);
}

void AppcastTest::brokenFeeds()
{
    QFETCH(const QByteArray, feed);
    std::optional<BrevokError> error;
    QVERIFY(parseAppcast(feed, &error).isEmpty());
    QVERIFY(error);
    QCOMPARE(error->description, u"The description of available updates cannot be read."_s);
}

void AppcastTest::allOfAnItemIsRead()
{
    const QByteArray description =
        "<description><![CDATA[<h2>New</h2>]]><b>and</b> " + nested("i", 20000) + "</description>";
    const SampleItem sample{.more = description
            + "<sparkle:version>101</sparkle:version>"
              "<sparkle:shortVersionString>1.1</sparkle:shortVersionString>"
              "<sparkle:releaseNotesLink> https://localhost/notes </sparkle:releaseNotesLink>"
              "<sparkle:deltas><enclosure url=\"https://localhost/delta\" length=\"3\"/></sparkle:deltas>"
            + nested("unknown", 20000)};
    std::optional<BrevokError> error;
    const QList<AppcastItem> items = parseAppcast(sampleFeed(sample.xml()), &error);
    QVERIFY(!error);
    QCOMPARE(items.size(), 1);
    const AppcastItem &item = items.constFirst();
    QCOMPARE(item.version, u"101"_s);
    QCOMPARE(item.shownVersion(), u"1.1"_s);
    QCOMPARE(item.description, u"<h2>New</h2>and deep"_s);
    QCOMPARE(item.releaseNotesLink, QUrl(u"https://localhost/notes"_s));
    QCOMPARE(item.address, QUrl(u"https://localhost/brevok.deb"_s));
    QCOMPARE(item.length, 1000);
}

// The first test of RFC 8032, section 7.1.
void AppcastTest::keysAndSignatures()
{
    const QByteArray key = publicKeyFrom(
        QByteArray::fromHex("d75a980182b10ab7d54bfed3c964073a0ee172f3daa62325af021a68f707511a").toBase64());
    const QByteArray signature = signatureFrom(
        QByteArray::fromHex("e5564300c360ac729086e2cc806e828a84877f1eb8e5d974d873e065224901555fb8821590a33bac"
                            "c61e39701cf9b46bd25bf5f0595bbe24655141438e7a100b")
            .toBase64());
    const auto *data = reinterpret_cast<const uchar *>("x");
    QVERIFY(isSigned(data, 0, signature, key));
    QVERIFY(!isSigned(data, 1, signature, key));
    QVERIFY(!isSigned(data, 0, signature, {}));
    QVERIFY(!isSigned(data, 0, {}, key));
    QVERIFY(!isSigned(nullptr, 0, signature, key));
    QVERIFY(publicKeyFrom({}).isEmpty());
    QVERIFY(publicKeyFrom(key.toHex()).isEmpty());
    QVERIFY(signatureFrom(key.toBase64()).isEmpty());
}

void AppcastTest::dueChecks()
{
    using namespace std::chrono_literals;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    QVERIFY(AutomaticChecks::isDue(now.addDays(-1), now, 24h));
    QVERIFY(!AutomaticChecks::isDue(now.addDays(-1).addSecs(1), now, 24h));
    QVERIFY(AutomaticChecks::isDue(now.addSecs(1), now, 24h));
}

QTEST_GUILESS_MAIN(AppcastTest)
#include "test_appcast.moc"
