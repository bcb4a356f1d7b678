// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/BoundedWork.h"
#include "platform/linux/files/InotifyApplicationSearch.h"
#include "support/FolderTest.h"
#include "support/SampleBundles.h"
#include "support/Table.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QTest>

#include <cstdio>

using namespace brevok;
using namespace Qt::StringLiterals;
using namespace brevok::testing;
using Notification = ApplicationSearch::Notification;

namespace {

const QStringList patterns{u"*InDesign CS*"_s, u"*InCopy 20*"_s};

/// A search and what it said since the test last asked.
struct Watcher {
    InotifyApplicationSearch search;
    QList<Notification> heard;

    explicit Watcher(const QStringList &folders, const QStringList &names = patterns)
        : search(folders)
    {
        search.start(names);
        QObject::connect(&search, &ApplicationSearch::notification, &search,
            [this](Notification notification) { heard.append(notification); });
    }
    [[nodiscard]] bool gathered() const { return heard.contains(Notification::DidFinishGathering); }
    [[nodiscard]] bool updated() const { return heard.contains(Notification::DidUpdate); }
};

} // namespace

class ApplicationSearchTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        FolderTest::init();
        QVERIFY(QDir().mkpath(m_root = path(u"Applications"_s)));
    }

    void namesAreMatchedWhole()
    {
        const QList<std::tuple<QString, QString, bool>> rows{
            {u"*InDesign CS*"_s, u"Adobe InDesign CS6.app"_s, true},
            {u"*InDesign CS*"_s, u"InDesign CS.app"_s, true},
            {u"*InDesign CS*"_s, u"Indesign CS6.app"_s, false},
            {u"*InDesign CS*"_s, u"InDesign C.app"_s, false},
            {u"InCopy"_s, u"InCopy.app"_s, true},
            {u"InCopy"_s, u"InCopy 2.app"_s, false},
            {u"a*a"_s, u"a.app"_s, false},
            {u"a*a"_s, u"aa.app"_s, true},
            {u"a*b*c"_s, u"axcxbxc.app"_s, true},
            {u"a*b*b"_s, u"axb.app"_s, false},
            {u"*"_s, u".app"_s, false},
        };
        for (const auto &[pattern, name, matching] : rows) {
            const SearchScope scope{.root = u"/"_s, .patterns = {pattern}};
            QVERIFY2((isBundleName(name) && scope.matches(name)) == matching, qPrintable(pattern + name));
        }
    }

    void gathersWhatIsThere()
    {
        const QStringList expected{at(u"Adobe/InCopy 2020.app"_s), at(u"InDesign CS3.app"_s),
            at(u"Link to InDesign CS9.app"_s), at(u"a/b/c/d/e/f/InDesign CS6.app"_s)};
        for (const QString &name : {u"InDesign CS3.app"_s, u"Adobe/InCopy 2020.app"_s,
                 u"Adobe/InCopy CC.app"_s, u"Photo.app/Contents/InDesign CS4.app"_s,
                 u"Adobe/.hidden/InDesign CS5.app"_s, u"a/b/c/d/e/f/InDesign CS6.app"_s,
                 u"a/b/c/d/e/f/g/InDesign CS7.app"_s, u"Adobe/Plug-Ins/InDesign CS8.app"_s}) {
            QVERIFY(makeApplication(name));
        }
        QVERIFY(writeFile(at(u"InDesign CS as a file.app"_s), "x"));
        QVERIFY(writeBundle(path(u"elsewhere/InDesign CS9.app"_s), {}));
        QVERIFY(QFile::link(path(u"elsewhere/InDesign CS9.app"_s), expected[2]));
        QVERIFY(QFile::link(u"nowhere"_s, at(u"Dangling InDesign CS1.app"_s)));
        QVERIFY(QFile::link(m_root, at(u"Adobe/loop"_s)));
        QVERIFY(QFile::link(u"itself"_s, at(u"itself"_s)));

        Watcher watcher({m_root, m_root + u"/Adobe/"_s, m_root, QString(), m_root + u"/missing/too"_s});
        QVERIFY(watcher.heard.isEmpty());
        QTRY_COMPARE(watcher.heard,
            (QList{Notification::DidStartGathering, Notification::GatheringProgress,
                Notification::DidFinishGathering}));
        QCOMPARE(watcher.search.results(), expected);
    }

    void followsChanges_data()
    {
        const Table<std::function<bool(const QString &root)>, QStringList> row;
        const QString one = u"one/InDesign CS1.app"_s;
        const auto moves = [one](const QString &to) {
            return [=](auto &root) {
                return QDir().rename(root + u'/' + one, root + u'/' + to);
            };
        };
        const auto removes = [](const QString &folder) {
            return [=](auto &root) {
                return QDir(root + u'/' + folder).removeRecursively();
            };
        };
        const auto writes = [](const QString &bundle) {
            return [=](auto &root) {
                return writeBundle(root + u'/' + bundle, {{u"v"_s, u"2"_s}});
            };
        };
        row("appears", writes(u"x/y/InDesign CS2.app"_s), {one, u"x/y/InDesign CS2.app"_s});
        row("appears as a link",
            [one](auto &root) { return QFile::link(root + u'/' + one, root + u"/InDesign CS2.app"_s); },
            {u"InDesign CS2.app"_s, one});
        row("is renamed", moves(u"one/InDesign CS2.app"_s), {u"one/InDesign CS2.app"_s});
        row("no longer matches", moves(u"one/Other.app"_s), {});
        row("vanishes", removes(one), {});
        row("vanishes with its folder", removes(u"one"_s), {});
        row("changes in place", writes(one), {one});
        row("is replaced by renaming",
            [one](auto &root) {
                const QString plist = root + u'/' + one + u"/Contents/Info.plist"_s;
                return writeFile(plist + u".new"_s, "x")
                    && ::rename(QFile::encodeName(plist + u".new"_s), QFile::encodeName(plist)) == 0;
            },
            {one});
        row("loses its contents", removes(one + u"/Contents"_s), {one});
        row("Plug-Ins appears", [](auto &root) { return QDir().mkdir(root + u"/one/Plug-Ins"_s); }, {one});
    }

    void followsChanges()
    {
        auto [action, expected] = columns<std::function<bool(const QString &root)>, QStringList>();
        QVERIFY(makeApplication(u"one/InDesign CS1.app"_s));
        Watcher watcher({m_root});
        QTRY_VERIFY(watcher.gathered());
        QVERIFY(action(m_root));
        QTRY_VERIFY(watcher.updated());
        expected.replaceInStrings(QRegularExpression(u"^"_s), m_root + u'/');
        QTRY_COMPARE(watcher.search.results(), expected);
    }

    void movedFoldersAreFollowed()
    {
        QVERIFY(makeApplication(u"one/InDesign CS1.app"_s));
        Watcher watcher({m_root});
        QTRY_VERIFY(watcher.gathered());
        QVERIFY(QDir().rename(at(u"one"_s), at(u"two"_s)));
        QTRY_COMPARE(watcher.search.results(), QStringList{at(u"two/InDesign CS1.app"_s)});
        // Another folder in its place, and the old one's watches at their new paths.
        QVERIFY(makeApplication(u"one/InDesign CS3.app"_s));
        QVERIFY(makeApplication(u"two/InDesign CS2.app"_s));
        QTRY_COMPARE(watcher.search.results(),
            (QStringList{at(u"one/InDesign CS3.app"_s), at(u"two/InDesign CS1.app"_s),
                at(u"two/InDesign CS2.app"_s)}));
        watcher.heard.clear();
        QVERIFY(QDir().mkdir(at(u"two/Plug-Ins"_s)));
        QTRY_VERIFY(watcher.updated());
        watcher.heard.clear();
        QVERIFY(QDir().rmdir(at(u"two/Plug-Ins"_s)));
        QTRY_VERIFY(watcher.updated());
        // An application moved beyond the search's sight.
        QVERIFY(QDir().rename(at(u"two"_s), path(u"two"_s)));
        QTRY_COMPARE(watcher.search.results(), QStringList{at(u"one/InDesign CS3.app"_s)});
    }

    // Who removes an application may take its time for the plug-ins beside it.
    void aFolderIsFollowedBeyondItsApplication()
    {
        QVERIFY(makeApplication(u"one/InDesign CS1.app"_s));
        QVERIFY(QDir().mkdir(at(u"one/Plug-Ins"_s)));
        Watcher watcher({m_root});
        QTRY_VERIFY(watcher.gathered());
        QVERIFY(QDir(at(u"one/InDesign CS1.app"_s)).removeRecursively());
        QTRY_VERIFY(watcher.updated());
        watcher.heard.clear();
        QVERIFY(QDir(at(u"one"_s)).removeRecursively());
        QTRY_VERIFY(watcher.updated());
    }

    void folderMayComeAndGo()
    {
        const QString root = at(u"not/yet/there"_s);
        const QString application = root + u"/InDesign CS1.app"_s;
        Watcher watcher({root});
        QTRY_VERIFY(watcher.gathered());
        QVERIFY(QDir().mkdir(at(u"not"_s)));
        QVERIFY(writeBundle(application, {}));
        QTRY_COMPARE(watcher.search.results(), QStringList{application});

        QVERIFY(QDir().rename(at(u"not"_s), at(u"away"_s)));
        QTRY_VERIFY(watcher.search.results().isEmpty());
        QVERIFY(writeFile(root, "a file in the folder's place"));
        QVERIFY(writeBundle(at(u"other/there/InDesign CS2.app"_s), {}));
        QVERIFY(QFile::remove(root));
        QVERIFY(QDir().rename(at(u"other/there"_s), root));
        QTRY_COMPARE(watcher.search.results(), QStringList{root + u"/InDesign CS2.app"_s});

        QVERIFY(QDir(root).removeRecursively());
        QTRY_VERIFY(watcher.search.results().isEmpty());
        QVERIFY(writeBundle(application, {}));
        QTRY_COMPARE(watcher.search.results(), QStringList{application});
    }

    void linkedFolderMayBeTurned()
    {
        QVERIFY(makeApplication(u"a/InDesign CS1.app"_s) && makeApplication(u"b/InDesign CS2.app"_s));
        const QString root = at(u"link"_s);
        QVERIFY(QFile::link(at(u"a"_s), root));
        Watcher watcher({root});
        QTRY_COMPARE(watcher.search.results(), QStringList{root + u"/InDesign CS1.app"_s});
        QVERIFY(QFile::remove(root) && QFile::link(at(u"b"_s), root));
        QTRY_COMPARE(watcher.search.results(), QStringList{root + u"/InDesign CS2.app"_s});
    }

    void unrelatedFilesAreNoNews()
    {
        QVERIFY(makeApplication(u"one/InDesign CS1.app"_s));
        QVERIFY(QDir().mkdir(at(u"one/Plug-Ins"_s)));
        QVERIFY(writeBundle(path(u"InDesign CS2.app"_s), {}));
        Watcher watcher({m_root});
        Watcher other({m_root}, {u"Another"_s});
        QTRY_VERIFY(watcher.gathered() && other.gathered());
        watcher.heard.clear();
        for (int i = 0; i < 1000; ++i) {
            QVERIFY(writeFile(at(u"one/file %1"_s.arg(i)), "x"));
        }
        QVERIFY(writeFile(at(u"one/InDesign CS1.app/Contents/Resources"_s), "x"));
        QVERIFY(writeBundle(at(u"one/Plug-Ins/Tolvane/A.InDesignPlugin"_s), {}));
        QVERIFY(makeApplication(u"new/Another.app"_s));
        QTRY_COMPARE(other.search.results().size(), 1);
        QVERIFY(QDir().rename(path(u"InDesign CS2.app"_s), at(u"InDesign CS2.app"_s)));
        QTRY_COMPARE(watcher.search.results().size(), 2);
        QCOMPARE(watcher.heard, QList{Notification::DidUpdate});
    }

    void lostEventsAreMadeUpFor()
    {
        Watcher watcher({m_root});
        QTRY_VERIFY(watcher.gathered());
        // More events than the kernel keeps, the interesting ones last.
        QFile limit(u"/proc/sys/fs/inotify/max_queued_events"_s);
        QVERIFY(limit.open(QIODevice::ReadOnly));
        const int kept = limit.readAll().trimmed().toInt();
        if (kept > 100'000) {
            QSKIP("This system keeps more events than a test can make.");
        }
        const QByteArray name = QFile::encodeName(at(u"file"_s));
        QVERIFY(writeFile(at(u"file"_s), "x"));
        for (int i = 0; i <= kept; i += 2) {
            QCOMPARE(::rename(name.constData(), (name + "2").constData()), 0);
            QCOMPARE(::rename((name + "2").constData(), name.constData()), 0);
        }
        QVERIFY(makeApplication(u"one/InDesign CS1.app"_s));
        QTRY_COMPARE(watcher.search.results(), QStringList{at(u"one/InDesign CS1.app"_s)});
        QVERIFY(makeApplication(u"one/InDesign CS2.app"_s));
        QTRY_COMPARE(watcher.search.results().size(), 2);
    }

    void staysRightInTurmoil()
    {
        Watcher watcher({m_root});
        // Applications come, move and go while the folders are being read.
        for (int i = 0; i < 60; ++i) {
            const QString name = u"%1/InDesign CS%2.app"_s.arg(i % 3).arg(i);
            QVERIFY(makeApplication(name));
            if (i % 2 == 0) {
                QVERIFY(QDir().rename(at(name), at(u"InCopy 20%1.app"_s.arg(i))));
            } else if (i % 5 == 0) {
                QVERIFY(QDir(at(name)).removeRecursively());
            } else if (i % 9 == 0) {
                const QString folder = at(QString::number(i % 3));
                QVERIFY(QDir().rename(folder, folder + u" old %1"_s.arg(i)));
            }
            QCoreApplication::processEvents();
        }
        QStringList there;
        QDirIterator bundles(m_root, {u"*.app"_s}, QDir::Dirs, QDirIterator::Subdirectories);
        while (bundles.hasNext()) {
            there.append(bundles.next());
        }
        there.sort();
        QVERIFY(there.size() >= 45);
        QTRY_COMPARE(watcher.search.results(), there);
    }

    void stopsForGood()
    {
        Watcher stopped({m_root});
        stopped.search.stop(); // while it gathers
        Watcher later({m_root});
        Watcher sentinel({m_root});
        QTRY_VERIFY(later.gathered() && sentinel.gathered());
        later.search.stop();
        later.heard.clear();
        QVERIFY(makeApplication(u"InDesign CS1.app"_s));
        QTRY_COMPARE(sentinel.search.results().size(), 1);
        QVERIFY(stopped.heard.isEmpty());
        QVERIFY(later.heard.isEmpty());
        QVERIFY(later.search.results().isEmpty());
    }

private:
    [[nodiscard]] QString at(const QString &name) const { return m_root + u'/' + name; }
    [[nodiscard]] bool makeApplication(const QString &name, const QString &version = u"7500"_s) const
    {
        return writeBundle(at(name), {{u"CFBundleVersion"_s, version}});
    }

    QString m_root;
};

QTEST_GUILESS_MAIN(ApplicationSearchTest)
#include "test_application_search.moc"
