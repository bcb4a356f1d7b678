// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"
#include "PackagesFixture.h"
#include "support/LogCapture.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

const QByteArray png("\x89PNG\r\n\x1a\nrest");

Validator tagged(const QByteArray &tag)
{
    return tag.isEmpty() ? Validator() : Validator{.entityTag = '"' + tag + '"', .scope = "scope"};
}

ServiceReply notModified()
{
    ServiceReply reply;
    reply.status = 304;
    reply.notModified = true;
    return reply;
}

ServiceReply taggedReply(const QByteArray &body, const QByteArray &tag)
{
    ServiceReply reply;
    reply.status = 200;
    reply.body = body;
    reply.validator = tagged(tag);
    return reply;
}

/// One of the two lists, and its owner: each is asked for and kept in the same way.
struct Fixture : PackagesFixture {
    explicit Fixture(QString list)
        : which(std::move(list))
    {
    }

    /// The owner as the program starts it.
    void begin()
    {
        packages.reset();
        own.reset();
        service.lists.clear();
        if (which == u"plugins"_s) {
            own = std::make_unique<BrevokPlugins>(state, service, alerts);
            own->start();
        } else {
            start();
        }
    }
    void check() { own ? own->checkForUpdates() : packages->checkForUpdates(); }
    [[nodiscard]] QObject *owner() const { return own ? static_cast<QObject *>(own.get()) : packages.get(); }
    [[nodiscard]] bool holds(const QString &name) const
    {
        return own ? own->definition(u"140:"_s + name + u"_1"_s) != nullptr : names().contains(name);
    }
    [[nodiscard]] QStringList dataKeys() const
    {
        return own ? QStringList{CatalogueKeys::pluginsData, CatalogueKeys::pluginPrefixes}
                   : QStringList{CatalogueKeys::packagesData};
    }
    [[nodiscard]] QByteArray list(const QStringList &elements, const QJsonArray &more = {}) const
    {
        QJsonArray array = more;
        for (const QString &name : elements) {
            array.append(own ? build(name, u"P"_s, u"1"_s, 140) : package(name, u"P"_s));
        }
        return QJsonDocument(array).toJson();
    }
    /// What the next request may ask for on condition that it is another.
    QByteArray nextTag()
    {
        service.lists.clear();
        check();
        return service.lists.constLast().known.entityTag;
    }

    QString which;
    std::unique_ptr<BrevokPlugins> own;
};

} // namespace

class KeptListsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { QVERIFY(finishBackgroundWork(10000)); }

    void whatIsNotWholeIsAskedForWhole_data() { lists(); }
    void whatIsNotWholeIsAskedForWhole()
    {
        QFETCH(QString, which);
        Fixture f(which);
        f.begin();
        const LogCapture log;
        f.service.answerList(taggedReply(f.list({u"A"_s}, {7}), "invalid"));
        QCOMPARE(f.nextTag(), QByteArray()); // so that what is wrong is told of each time
        f.service.answerList(taggedReply("{}", "no list"));
        QCOMPARE(f.nextTag(), QByteArray());
        f.service.answerList(taggedReply(f.list({u"A"_s, u"B"_s}), "1"));
        QCOMPARE(f.nextTag(), R"("1")"_ba);
        f.service.answerList(taggedReply("{}", "no list"));
        QCOMPARE(f.nextTag(), R"("1")"_ba); // what is stored is still that list
        // What the service said last of the same list counts.
        f.service.answerList(taggedReply(f.list({u"A"_s, u"B"_s}), "2"));
        QVERIFY(f.flushed());
        f.begin();
        QCOMPARE(f.nextTag(), R"("2")"_ba);
        f.service.answerList(taggedReply(f.list({u"A"_s, u"B"_s}), {}));
        QCOMPARE(f.nextTag(), QByteArray());

        // A record that the disk has lost comes back.
        for (const QString &key : f.dataKeys()) {
            const QStringList entries = f.state.entries(key).keys();
            f.state.commit({{key, entries.constFirst(), std::nullopt}});
            QVERIFY(f.flushed());
            f.begin();
            QVERIFY(f.service.lists[0].known.isEmpty());
            f.service.answerList(taggedReply(f.list({u"A"_s, u"B"_s}), "1"));
            QVERIFY(f.holds(u"A"_s) && f.holds(u"B"_s));
            QCOMPARE(f.nextTag(), R"("1")"_ba);
        }
        // Nor does one that somebody else gave count as the service's.
        f.own ? f.own->updateWithArray({}) : f.packages->updateWithArray({});
        QCOMPARE(f.nextTag(), QByteArray());
    }

    void anotherListCameMeanwhile_data() { lists(); }
    // The answer is about the list that was kept when the question was put.
    void anotherListCameMeanwhile()
    {
        QFETCH(QString, which);
        Fixture f(which);
        f.begin();
        f.service.answerList(taggedReply(f.list({u"A"_s}), "1"));
        for (const bool beingRead : {false, true}) {
            f.service.lists.clear();
            f.check();
            f.check();
            const QSignalSpy finished(f.owner(), SIGNAL(checkFinished(bool)));
            const auto other = taggedReply(f.list({u"A"_s, beingRead ? u"C"_s : u"B"_s}), "2");
            if (beingRead) {
                f.service.lists.takeFirst().handler(other);
            } else {
                f.service.answerList(other);
            }
            f.service.answerList(notModified());
            QTRY_COMPARE(f.service.lists.size(), 1);
            QVERIFY(f.service.lists[0].known.isEmpty());
            QCOMPARE(finished.size(), 1);
            f.service.answerList(taggedReply(f.list({u"A"_s}), "1"));
            QCOMPARE(finished.size(), 2);
            QCOMPARE(f.nextTag(), R"("1")"_ba);
        }
    }

    // As after each list; they too come only when they are others. What a list left out keeps its own.
    void packagesGetTheirIconsAgain()
    {
        PackagesFixture f;
        f.start();
        const auto listed = [](const QStringList &names) {
            QJsonArray list;
            for (const QString &name : names) {
                list.append(package(name, u"P"_s, u"https://x/"_s + name));
            }
            return QJsonDocument(list).toJson();
        };
        const auto answer = [&f](ServiceReply reply, const QByteArray &tag = {}) {
            reply.validator = tagged(tag);
            f.service.files.takeFirst().handler(reply);
        };
        f.service.answerList(taggedReply(listed({u"gone"_s}), "1"));
        answer({.status = 200, .body = png});
        f.packages->checkForUpdates();
        f.service.answerList(taggedReply(listed({u"a"_s, u"b"_s}), "2"));
        QCOMPARE(f.service.files.size(), 2);
        answer({.status = 200, .body = png}, "a");
        answer({.error = BrevokError{}});
        QTRY_COMPARE(f.iconPath(u"a"_s), f.dataFolder + u"/a"_s);
        QTRY_COMPARE(f.iconPath(u"gone"_s), f.dataFolder + u"/gone"_s);

        QVERIFY(QFile::remove(f.iconPath(u"a"_s)));
        f.packages->checkForUpdates();
        f.service.answerList(notModified());
        QVERIFY(!f.packages->packageRecords()[0].contains(PackageKeys::iconPath));
        QCOMPARE(f.service.files.size(), 2);
        QCOMPARE(f.service.files[0].known, tagged("a"));
        QVERIFY(f.service.files[1].known.isEmpty());
        answer(notModified());
        answer({.status = 304}); // that nobody asked for
        QTRY_VERIFY(QFile::exists(f.dataFolder + u"/a"_s));
        QTRY_VERIFY(f.packages->packageRecords()[0].contains(PackageKeys::iconPath));
        QCOMPARE(f.packages->packagesIcons().value(u"a"_s).data, png);
        QVERIFY(f.packages->packagesIcons().value(u"b"_s).isGeneric());
        QVERIFY(f.packages->packageRecords()[2].contains(PackageKeys::iconPath));
    }

private:
    static void lists()
    {
        QTest::addColumn<QString>("which");
        QTest::newRow("plugins") << u"plugins"_s;
        QTest::newRow("packages") << u"packages"_s;
    }
};

QTEST_GUILESS_MAIN(KeptListsTest)
#include "test_kept_lists.moc"
