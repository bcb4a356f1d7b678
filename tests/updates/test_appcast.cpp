// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "support/InRow.h"
#include "support/SampleFeed.h"
#include "updates/PackageSignature.h"
#include "updates/UpdateChoice.h"

#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

QByteArray nested(const QByteArray &tag, qsizetype depth)
{
    return ('<' + tag + '>').repeated(depth) + "deep" + ("</" + tag + '>').repeated(depth);
}

struct Case {
    const char *name;
    QList<SampleItem> items;
    QString chosen; ///< nothing where no version is
    bool refused = false;
    QString skipped{};
    QString channel{};
};

void check(const QList<Case> &cases)
{
    for (const Case &one : cases) {
        const InRow in(one.name);
        QByteArray items;
        for (const SampleItem &item : one.items) {
            items += item.xml();
        }
        std::optional<BrevokError> error;
        const QList<AppcastItem> parsed = parseAppcast(sampleFeed(items), &error);
        QVERIFY(!error);
        const UpdateChoice choice = chooseUpdate(parsed,
            {.installedVersion = u"100"_s,
                .installedShownVersion = u"1.0.0"_s,
                .systemVersion = u"12"_s,
                .channel = one.channel,
                .skippedVersion = one.skipped});
        QCOMPARE(choice.item ? choice.item->version : QString(), one.chosen);
        QCOMPARE(!choice.refusal.isEmpty(), one.refused);
    }
}

} // namespace

class AppcastTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void choices()
    {
        const QByteArray link = "http://localhost/brevok.deb";
        check({
            {"nothing", {}, {}},
            {"newest of several, in no order",
                {{.version = "100.2"}, {.version = "101"}, {.version = "100.10"}, {.version = "99"}},
                u"101"_s},
            {"the same version, written longer", {{.version = "100.0"}}, {}},
            {"a downgrade", {{.version = "99.9"}}, {}},
            {"a downgrade that counts as newer",
                {{.version = "999", .more = "<sparkle:shortVersionString>0.9</sparkle:shortVersionString>"}},
                {}},
            {"no version", {{}}, {}},
            {"a version that is too long", {{.version = QByteArray("9").repeated(200)}}, {}},
            {"an address without TLS", {{.version = "101", .url = link}}, {}, true},
            {"a secure older one", {{.version = "102", .url = link}, {.version = "101"}}, u"101"_s, true},
            {"an insecure older one", {{.version = "101", .url = link}, {.version = "102"}}, u"102"_s},
            {"no address", {{.version = "101", .url = ""}}, {}, true},
            {"an address with a name and password",
                {{.version = "101", .url = "https://a:b@localhost/x.deb"}}, {}, true},
            {"no signature", {{.version = "101", .signature = ""}}, {}, true},
            {"no length", {{.version = "101", .length = ""}}, {}, true},
            {"more than anybody ships", {{.version = "101", .length = "1073741825"}}, {}, true},
            {"the skipped version", {{.version = "101"}}, {}, false, u"101"_s},
            {"older than the skipped version", {{.version = "101"}}, {}, false, u"102"_s},
            {"newer than the skipped version", {{.version = "101"}, {.version = "103"}}, u"103"_s, false,
                u"102"_s},
            {"an unsafe version that is skipped", {{.version = "101", .url = link}}, {}, false, u"101"_s},
        });
    }

    void choicesOfSystemAndChannel()
    {
        const QByteArray beta = "<sparkle:channel>beta</sparkle:channel>";
        const QByteArray nightly = "<sparkle:channel>nightly</sparkle:channel>";
        check({
            {"for a newer system", {{.version = "103", .minimum = "13"}, {.version = "102", .minimum = "12"}},
                u"102"_s},
            {"for another system",
                {{.version = "103", .system = "macos"}, {.version = "102", .system = "linux"}}, u"102"_s},
            {"for no system that is named", {{.version = "103", .system = ""}, {.version = "102"}}, u"102"_s},
            {"a disk image alone",
                {{.version = "",
                    .url = "http://localhost/x.dmg",
                    .more = "<sparkle:version>103</sparkle:version>",
                    .system = "macos"}},
                {}},
            {"of channels that nobody asked for",
                {{.version = "103", .more = beta}, {.version = "102"}, {.version = "104", .more = nightly}},
                u"102"_s},
            {"of the channel that was asked for",
                {{.version = "103", .more = beta}, {.version = "102"}, {.version = "104", .more = nightly}},
                u"103"_s, false, {}, u"beta"_s},
            {"older in the channel", {{.version = "103", .more = beta}, {.version = "104"}}, u"104"_s, false,
                {}, u"beta"_s},
        });
    }

    void brokenFeeds()
    {
        const QByteArray item = SampleItem{.version = "101"}.xml();
        const QByteArray whole = sampleFeed(item);
        const QList<std::tuple<const char *, QByteArray>> rows{
            {"empty", {}},
            {"cut short", whole.chopped(8)},
            {"a web page", "<html><body>" + item.mid(6, 20) + "</body></html>"},
            {"an entity that reads a file",
                sampleFeed("<item><description>&f;</description></item>" + item,
                    "<!DOCTYPE rss [<!ENTITY f SYSTEM \"file:///etc/passwd\">]>")},
            {"a document type alone", sampleFeed(item, "<!DOCTYPE rss>")},
            {"too large", sampleFeed(item + "<!--" + QByteArray(appcastSizeLimit, ' ') + "-->")},
        };
        for (const auto &[name, feed] : rows) {
            const InRow in(name);
            std::optional<BrevokError> error;
            QVERIFY(parseAppcast(feed, &error).isEmpty());
            QVERIFY(error);
            QCOMPARE(error->description, u"The description of available updates cannot be read."_s);
        }
    }

    void allOfAnItemIsRead()
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
    void keysAndSignatures()
    {
        const QByteArray key = publicKeyFrom(
            QByteArray::fromHex("d75a980182b10ab7d54bfed3c964073a0ee172f3daa62325af021a68f707511a")
                .toBase64());
        const QByteArray signature = signatureFrom(QByteArray::fromHex(
            "e5564300c360ac729086e2cc806e828a84877f1eb8e5d974d873e065224901555fb8821590a33bac"
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
};

QTEST_GUILESS_MAIN(AppcastTest)
#include "test_appcast.moc"
