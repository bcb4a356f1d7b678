// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "../updates/UpdaterStage.h"
#include "foundation/Tasks.h"
#include "platform/PropertyLists.h"
#include "platform/SoftwareInstaller.h"
#include "support/InRow.h"
#include "support/RecordingOpener.h"
#include "ui/windows/BrevokSoftwareUpdateController.h"
#include "ui/windows/ReleaseNotesView.h"
#include "ui/windows/SoftwareUpdateFace.h"
#include "WindowTest.h"

#include <QBitmap>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QRegion>
#include <QTemporaryDir>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Phase = UpdateState::Phase;

namespace {

constexpr int patient = 30000;

/// A system that does what the test says.
class WaitingSystem final : public SoftwareInstaller {
public:
    QString path;
    ProgressHandler tellProgress;
    DoneHandler end;
    void install(const QString &file, QObject *, ProgressHandler progress, DoneHandler done) override
    {
        path = file;
        tellProgress = std::move(progress);
        end = std::move(done);
    }
};

/// The window over the real updater and a server.
struct Stage final : UpdaterStage {
    Stage()
        : UpdaterStage({}, &system)
    {
        serveGoodPackage();
        SampleItem offered = item(maker.sign(package), package.size());
        offered.more = "<description><![CDATA[<h2>New</h2><p>Faster.</p>]]></description>";
        serve(offered.xml());
    }

    [[nodiscard]] QPushButton *button(const QString &name) const
    {
        return window.findChild<QPushButton *>(name);
    }
    void click(const QString &name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    [[nodiscard]] QString text(const QString &name) const
    {
        return window.findChild<QLabel *>(name)->text().remove(u'\u200b');
    }
    [[nodiscard]] QStringList buttons() const
    {
        QStringList visible;
        for (const QString &name : {u"skip"_s, u"later"_s, u"cancel"_s, u"ok"_s, u"install"_s}) {
            if (button(name)->isVisible()) {
                visible.append(button(name)->text());
            }
        }
        return visible;
    }
    WaitingSystem system;
    MainBundle bundle{u"/x"_s, scratch.path()};
    RecordingOpener opener;
    BrevokSoftwareUpdateController window{{*updater, bundle, opener}};
};

} // namespace

class SoftwareUpdateTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void cleanupTestCase() { QVERIFY(finishBackgroundWork(patient)); }

    void wholeWay()
    {
        Stage stage;
        QVERIFY(!stage.window.isVisible());
        stage.updater->checkForUpdatesInBackground();
        QTRY_VERIFY_WITH_TIMEOUT(stage.window.isVisible(), patient);
        QCOMPARE(stage.buttons(),
            (QStringList{u"Skip This Version"_s, u"Remind Me Later"_s, u"Install Update"_s}));
        QCOMPARE(stage.text(u"text"_s),
            u"Version 101 is available; you have version 1.0.0. Would you like to install it now?"_s);
        const auto *notes = stage.window.findChild<ReleaseNotesView *>();
        QVERIFY(notes->isVisible());
        QCOMPARE(notes->toPlainText(), u"New\nFaster."_s);

        stage.click(u"install"_s);
        QTRY_COMPARE_WITH_TIMEOUT(stage.phase(), Phase::Installing, patient);
        QVERIFY(QFile::exists(stage.system.path));
        QCOMPARE(stage.buttons(), QStringList{u"Hide"_s});
        const auto *bar = stage.window.findChild<QProgressBar *>();
        QCOMPARE(bar->maximum(), 0);
        stage.system.tellProgress(40);
        QCOMPARE(bar->value(), 400);
        stage.click(u"ok"_s);
        QVERIFY(!stage.window.isVisible());

        stage.system.end(BrevokError{.description = u"No room."_s});
        QVERIFY(stage.window.isVisible());
        QCOMPARE(stage.text(u"headline"_s), u"Version 101 was not installed."_s);
        QCOMPARE(stage.text(u"text"_s), u"No room."_s);
        QCOMPARE(stage.buttons(), (QStringList{u"Remind Me Later"_s, u"Try Again"_s}));
        stage.click(u"install"_s);
        QTRY_COMPARE_WITH_TIMEOUT(stage.phase(), Phase::Installing, patient);
        stage.system.end(std::nullopt);
        QCOMPARE(stage.text(u"headline"_s), u"Version 101 is installed."_s);
        stage.click(u"ok"_s);
        QVERIFY(!stage.window.isVisible());
        QCOMPARE(stage.phase(), Phase::Idle);
    }

    void answers()
    {
        Stage stage;
        stage.serve({});
        QCOMPARE(stage.check(), Phase::UpToDate);
        QCOMPARE(stage.text(u"text"_s), u"Version 1.0.0 is the latest version."_s);
        QCOMPARE(stage.buttons(), QStringList{u"OK"_s});

        stage.server.on(UpdaterStage::feedPath(), Response::of(500));
        QCOMPARE(stage.check(), Phase::Failed);
        QCOMPARE(stage.text(u"text"_s), u"Server responded with HTTP code: 500."_s);
        QCOMPARE(stage.buttons(), QStringList{u"OK"_s});
        const SoftwareUpdateFace half =
            faceFor({.phase = Phase::Downloading, .version = u"101"_s, .done = 1500000, .total = 3000000});
        QCOMPARE(half.permille, 500);
        QCOMPARE(half.progress, u"1.5 MB of 3.0 MB"_s);
    }

    void keysAndButtons()
    {
        Stage stage;
        const auto pressReturn = [&stage] {
            QTest::keyClick(stage.window.focusWidget(), Qt::Key_Return);
        };
        stage.updater->checkForUpdates();
        QCOMPARE(stage.buttons(), QStringList{u"Cancel"_s});
        QCOMPARE(stage.ended({Phase::Checking}), Phase::Offered);
        QTest::keyClick(&stage.window, Qt::Key_Escape);
        QVERIFY(!stage.window.isVisible());
        QCOMPARE(stage.phase(), Phase::Idle);

        QCOMPARE(stage.check(), Phase::Offered);
        QVERIFY(!stage.settings.contains(u"SUSkippedVersion"_s));
        stage.click(u"skip"_s);
        QVERIFY(!stage.window.isVisible() && stage.settings.contains(u"SUSkippedVersion"_s));

        QCOMPARE(stage.check(), Phase::Offered);
        QCOMPARE(stage.window.focusWidget(), stage.button(u"install"_s));
        stage.button(u"later"_s)->setFocus();
        pressReturn();
        QCOMPARE(stage.phase(), Phase::Idle);
        QVERIFY(stage.server.requests(UpdaterStage::packagePath()).isEmpty());

        QCOMPARE(stage.check(), Phase::Offered);
        pressReturn();
        QCOMPARE(stage.phase(), Phase::Downloading);
        pressReturn(); // held a little too long: only Escape and the space bar cancel
        QTRY_COMPARE_WITH_TIMEOUT(stage.phase(), Phase::Installing, patient);
        stage.system.end(std::nullopt);
        pressReturn();
        QCOMPARE(stage.phase(), Phase::Idle);
        QVERIFY(!stage.window.isVisible());
    }

    void hostileNotes()
    {
        // One that could be shown: only what the view does with it keeps it away.
        const QTemporaryDir folder;
        QImage picture(40, 40, QImage::Format_RGB32);
        picture.fill(Qt::red);
        const QString path = folder.filePath(u"picture.png"_s);
        QVERIFY(picture.save(path));
        const QString address = QUrl::fromLocalFile(path).toString();
        const QList<std::tuple<const char *, QString, QString>> rows{
            {"plain text with signs", u"a < b && c > d"_s, u"a < b && c > d"_s},
            {"script", u"<p>Good</p><script>alert('x')</script><style>p{}</style>"_s, u"Good"_s},
            {"resources",
                u"<p>Good <img src=\"%1\"><object data=\"%1\"></object><link rel=stylesheet href=\"%1\"></p>"_s
                    .arg(address),
                u"Good"_s},
            {"tables in tables",
                u"<table><tr><td>"_s.repeated(2000) + u"deep"_s + u"</td></tr></table>"_s.repeated(2000),
                u"deep"_s},
            {"lists in lists", u"<ul><li>"_s.repeated(2000) + u"deep"_s, u"deep"_s},
            {"quotes in quotes", u"<blockquote>"_s.repeated(2000) + u"deep"_s, u"deep"_s},
        };
        for (const auto &[name, notes, shown] : rows) {
            const InRow in(name);
            ReleaseNotesView view;
            view.setNotes(notes);
            view.show();
            QVERIFY(QRegion(view.grab().createMaskFromColor(Qt::red, Qt::MaskOutColor)).isEmpty());
            QCOMPARE(view.toPlainText().trimmed(), shown);
        }
    }

    void linksInNotes()
    {
        Stage stage;
        auto *notes = stage.window.findChild<ReleaseNotesView *>();
        notes->setNotes(
            u"<p style=\"color:#fff;font-size:200px\"><a href=\"https://localhost/x\">More</a></p>"_s);
        for (const QString &link : {u"https://localhost/x"_s, u"file:///etc/passwd"_s, u"javascript:1"_s}) {
            Q_EMIT notes->anchorClicked(QUrl(link));
        }
        QCOMPARE(stage.opener.opened, QList<QUrl>{QUrl(u"https://localhost/x"_s)});
        QVERIFY(!notes->toPlainText().isEmpty());
    }
};

QTEST_MAIN(SoftwareUpdateTest)
#include "test_software_update.moc"
