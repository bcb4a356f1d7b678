// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// What is made of an archive, which is the same with and without the privileged helper.

#include "Roads.h"
#include "support/Folders.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"
#include "support/Table.h"
#include "support/ZipWriter.h"

#include <QCryptographicHash>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

using Members = QList<ZipMember>;
using Tree = std::map<QByteArray, QByteArray>;

const QByteArray bundle = "A.InDesignPlugin/";
// e and a combining acute accent: the form in which Macs write an accented letter.
const QByteArray decomposed = "e\xcc\x81";
const QByteArray composed = "\xc3\xa9";
constexpr quint16 utf8Flag = 0x0800;

ZipMember linkTo(const QByteArray &target, const QByteArray &name)
{
    return {name, target, zipLink};
}

/// One host application with an old plug-in.
class Host final {
public:
    explicit Host(Road road, const QByteArray &name = "A")
        : m_road(road)
        , m_target(
              m_scratch.filePath(u"App/Plug-Ins/Tolvane/%1.InDesignPlugin"_s.arg(QString::fromUtf8(name))))
    {
        writeFile(m_target + u"/Contents/Old"_s, "old");
        writeFile(outside() + u"/file"_s, "untouched");
        m_old = treeOf(m_target);
        m_outside = treeOf(outside());
    }

    InstallResult install(const QByteArray &archive, const QByteArray &checksum = {})
    {
        writeFile(m_scratch.filePath(u"a.zip"_s), archive);
        return testing::install(m_road, m_scratch.filePath(u"a.zip"_s), m_target, checksum);
    }
    [[nodiscard]] bool isAsBefore() const
    {
        return treeOf(m_target) == m_old
            && entries(QFileInfo(m_target).path()) == QStringList{QFileInfo(m_target).fileName()}
        && treeOf(outside()) == m_outside && entries(m_scratch.path()).size() == 3;
    }
    [[nodiscard]] Tree tree() const { return treeOf(m_target); }
    [[nodiscard]] QStringList beside() const { return entries(QFileInfo(m_target).path()); }
    [[nodiscard]] QString target() const { return m_target; }

private:
    [[nodiscard]] QString outside() const { return m_scratch.filePath(u"outside"_s); }

    QTemporaryDir m_scratch;
    Road m_road;
    QString m_target;
    Tree m_old;
    Tree m_outside;
};

} // namespace

using Refused = Table<QByteArray, QString>;
using Taken = Table<QByteArray, Tree>;

class ArchivesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void refused_data()
    {
        const Refused add;
        const QString damaged = u"the archive is damaged"_s;
        const QString refused = u"the archive is refused: "_s;
        const QString other = u"the archive contains no A.InDesignPlugin"_s;
        const auto row = [&add](const char *name, const QString &reason, const Members &members) {
            add(name, zipArchive(members), reason);
        };
        const ZipMember good{bundle + "good", "good"};
        const auto beside = [&](const char *name, const QString &reason, const ZipMember &evil) {
            row(name, reason, {good, evil});
        };
        add("empty file", QByteArray(), damaged);
        add("no zip", noise(5000), damaged);
        row("no entries", damaged, {});
        row("resource forks only", other, {{"__MACOSX/._A", "x"}});
        row("another plug-in", other, {{"B.InDesignPlugin/x", "x"}, {"Read Me.txt", "x"}});
        beside("climbs out", refused, {"../outside/file", "x"});
        beside("climbs out on the way", refused, {bundle + "b/../../../outside/file", "x"});
        beside("climbs out among forks", refused, {"__MACOSX/../../outside/file", "x"});
        beside("absolute", refused, {"/outside", "x"});
        beside("backslashes", refused, {"..\\outside\\file", "x"});
        beside("nameless", refused, {".", "x"});
        beside("name too long", refused, {bundle + QByteArray(256, 'n'), "x"});
        beside("too deep", refused, {QByteArray("d/").repeated(64) + "f", "x"});
        row("writes through a link", refused,
            {linkTo("../../outside", bundle + "out"), {bundle + "out/file", "x"}});
        row("replaces its own link", refused, {linkTo("sub", bundle + "out"), {bundle + "out", "x"}});
        row("folder becomes a link", refused, {{bundle + "b/file", "x"}, linkTo("good", bundle + "b")});
        beside("link to an absolute path", refused, linkTo("/etc/passwd", bundle + "l"));
        beside("link out of the bundle", refused, linkTo("../../B/file", bundle + "b/l"));
        beside("link at the top", refused, linkTo(bundle + "good", "L"));
        beside("link to nothing", refused, linkTo("", bundle + "l"));
        row("links that climb together", refused,
            {{bundle + "b/c/f", "x"}, linkTo("b/c", bundle + "up"), linkTo("up/../../../x", bundle + "l")});
        row("the plug-in is a link", refused, {linkTo("../outside", bundle.chopped(1))});
        beside("device", refused, {bundle + "d", {}, 0020666});
        beside("device beside the plug-in", refused, {"d", {}, 0020666});
        beside("set-uid program", refused, {bundle + "s", "x", 0104755});
        beside("set-gid program", refused, {bundle + "s", "x", 0102755});
        row("same file twice", refused, {good, good});
        row("file becomes a folder", refused, {good, {bundle + "good/file", "x"}});
        row("folder becomes a file", refused, {{bundle + "b/file", "x"}, {bundle + "b", "x"}});
        beside("encrypted", refused, {bundle + "e", "secret bytes", zipFile, false, -1, 1});
        beside("wrong checksum", damaged, {bundle + "c", "x", zipFile, false, -1, 0, true});
        beside("wrong checksum, packed", damaged, {bundle + "c", noise(300'000), zipFile, true, -1, 0, true});
        beside("larger than it claims", damaged, {bundle + "c", noise(300'000), zipFile, true, 1000});
        beside("smaller than it claims", damaged, {bundle + "c", noise(1000), zipFile, true, 300'000});
        add("cut short", zipArchive({good, {bundle + "more", noise(1000)}}).chopped(500), damaged);
        row("bomb of zeros", refused, {{bundle + "zeros", QByteArray(80'000'000, '\0'), zipFile, true}});
        row("bomb beside the plug-in", refused,
            {good, {"zeros", QByteArray(80'000'000, '\0'), zipFile, true}});
        row("claims too much", refused, {{bundle + "f", "x", zipFile, true, 0xFFFFFFF0, 0, false, 3}});
        row("bomb that claims little", damaged,
            {{bundle + "zeros", QByteArray(1'000'000, '\0'), zipFile, true, 10, 0, false, 100}});
        row("too many entries", refused, {{bundle + "f", {}, zipFile, false, -1, 0, false, 200'001}});
        row("too many links", refused, {{bundle + "f", "x", zipLink, false, -1, 0, false, 10'001}});
    }

    void refused()
    {
        // reason: how it begins
        const auto [archive, reason] = Refused::current();
        QStringList reasons;
        for (const Road road : roads) {
            const LogCapture log;
            Host host(road);
            const InstallResult result = host.install(archive);
            QVERIFY(result.answer && !result.error); // as ever when an archive does not unpack
            QVERIFY(result.failure);
            QCOMPARE(result.failure->code, reason.endsWith(u"damaged") ? EILSEQ : EBADMSG);
            reasons.append(result.failure->description);
            QVERIFY2(reasons.last().startsWith(reason), qPrintable(reasons.last()));
            QVERIFY(host.isAsBefore());
            QVERIFY(LogCapture::mentions(u"Error: Could not unpack"_s));
            QVERIFY(LogCapture::contains(u"brought back: %1"_s.arg(host.target())));
        }
        QCOMPARE(reasons.first(), reasons.last());
    }

    void taken_data()
    {
        const Taken add;
        const auto row = [&add](const char *name, const Members &members, const Tree &wanted) {
            add(name, zipArchive(members), wanted);
        };
        const ZipMember good{bundle + "good", "good"};
        const Tree alone{{"good", "100644 good"}};
        row("plain", {good}, alone);
        row("a file beside it", {good, {"Read Me.txt", "x"}, {"Docs/a", "x"}}, alone);
        row("a second plug-in", {{"B.InDesignPlugin/x", "x"}, good, {"B.InDesignPlugin/y", "x"}}, alone);
        row("what Macs add", {good, {"__MACOSX/" + bundle + "._good", "x"}, {bundle + ".DS_Store", "x"}},
            alone);
        row("open modes",
            {{bundle, {}, 0040777}, {bundle + "wide/", {}, 0042777}, {bundle + "good", "good", 0100666},
                {bundle + "run", "x", 0100777}, {bundle + "secret", "x", 0100400}},
            {{"good", "100644 good"}, {"run", "100755 x"}, {"secret", "100644 x"}, {"wide", "40755 "}});
        row("called a pipe", {{bundle + "good", "good", 0010644}}, alone);
        row("decomposed names",
            {{bundle + decomposed + "/" + decomposed, "x", zipFile, false, -1, utf8Flag},
                {bundle + decomposed + "/packed", noise(9), zipFile, true, -1, utf8Flag},
                {bundle + "link-" + decomposed, decomposed + "/" + decomposed, zipLink, false, -1, utf8Flag},
                {bundle + "plain-" + decomposed, "x"},
                {bundle + composed, "x", zipFile, false, -1, utf8Flag}},
            {{decomposed, "40755 "}, {decomposed + "/" + decomposed, "100644 x"},
                {decomposed + "/packed", "100644 " + noise(9)},
                {"link-" + decomposed, "120777 " + decomposed + "/" + decomposed},
                {"plain-" + decomposed, "100644 x"}, {composed, "100644 x"}});
    }

    void taken()
    {
        const auto [archive, wanted] = Taken::current();
        for (const Road road : roads) {
            const LogCapture log;
            Host host(road);
            const InstallResult result = host.install(archive);
            QVERIFY2(result.answer && !result.error && !result.failure,
                result.failure ? qPrintable(result.failure->description) : "");
            QCOMPARE(host.tree(), wanted);
            QCOMPARE(host.beside(), QStringList{u"A.InDesignPlugin"_s});
        }
    }

    void aNameInAnotherFormIsTheTargets()
    {
        const QByteArray archive =
            zipArchive({{decomposed + ".InDesignPlugin/good", "good", zipFile, false, -1, utf8Flag}});
        for (const Road road : roads) {
            for (const QByteArray &name : {composed, decomposed}) {
                const LogCapture log;
                Host host(road, name);
                QVERIFY(!host.install(archive).failure);
                QCOMPARE(host.tree(), (Tree{{"good", "100644 good"}}));
                QCOMPARE(host.beside(), QStringList{QString::fromUtf8(name) + u".InDesignPlugin"_s});
            }
        }
    }

    void checksumsAreKept()
    {
        const QByteArray archive = zipArchive({{bundle + "good", noise(300'000)}});
        const QByteArray right = QCryptographicHash::hash(archive, QCryptographicHash::Sha256);
        const QByteArray wrong = QCryptographicHash::hash("x", QCryptographicHash::Sha256);
        for (const Road road : roads) {
            const LogCapture log;
            Host host(road);
            for (const QByteArray &checksum : {wrong, right.chopped(1)}) {
                const InstallResult result = host.install(archive, checksum);
                QVERIFY(!result.answer && result.error && result.failure);
                QCOMPARE(result.failure->description, u"the archive does not match the catalogue"_s);
                QVERIFY(host.isAsBefore());
            }
            QVERIFY(!LogCapture::mentions(u"removeItem"_s)); // it has not been touched
            QVERIFY(!host.install(archive, right).failure);
            QCOMPARE(host.tree().size(), size_t(1));
        }
    }

    void applicationsAreNotMadeAnew()
    {
        for (const Road road : roads) {
            const LogCapture log;
            const QTemporaryDir scratch;
            const QString application = scratch.filePath(u"App"_s);
            const QString archive = scratch.filePath(u"a.zip"_s);
            const QString workspace = application + u"/Presets/InDesign Workspaces/Tolvane.xml"_s;
            const QString target = application + u"/Plug-Ins/Tolvane/A.InDesignPlugin"_s;
            QVERIFY(writeFile(archive, zipArchive({{bundle + "good", "good"}})));
            // Nothing, then its folder alone, then that for plug-ins too.
            for (const QStringList &there : {QStringList{u"a.zip"_s}, QStringList{u"App"_s, u"a.zip"_s},
                     QStringList{u"App"_s, u"a.zip"_s}}) {
                const InstallResult plugin = install(road, archive, target);
                QVERIFY(!plugin.answer && plugin.error);
                QCOMPARE(plugin.failure->description, u"the folder no longer exists"_s);
                QCOMPARE(entries(scratch.path()), there);
                QCOMPARE(install(road, archive, workspace).answer, there.size() > 1);
                QDir().mkdir(application);
            }
            QCOMPARE(entries(application), QStringList{u"Presets"_s});
            QVERIFY(QDir().mkdir(application + u"/Plug-Ins"_s));
            QVERIFY(!install(road, archive, target).failure);
        }
    }
};

QTEST_GUILESS_MAIN(ArchivesTest)
#include "test_archives.moc"
