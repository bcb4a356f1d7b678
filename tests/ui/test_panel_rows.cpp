// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "PanelRig.h"

#include "ui/widgets/PanelButtons.h"
#include "ui/widgets/PanelLabels.h"
#include "ui/widgets/Spinner.h"

#include <QApplication>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

void press(Qt::Key key)
{
    QTest::keyClick(QApplication::focusWidget(), key);
}

} // namespace

class TestPanelRows final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // All but what the windowless platform says of itself.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
    }

    void installsAndRemovesFromARow()
    {
        PanelRig rig(true);
        fillCatalogue(rig, 3);
        rig.open();
        auto *install = rig.control<PanelButton>(0, "actionButton");
        QCOMPARE(install->accessibleName(), u"Install Package p00000"_s);
        QVERIFY(!rig.control<PanelButton>(1, "actionButton")->isEnabled());
        QCOMPARE(install->x(), rig.control<PanelButton>(1, "actionButton")->x());
        QCOMPARE(install->width(), rig.control<PanelButton>(1, "actionButton")->width());

        install->setFocus();
        press(Qt::Key_Return);
        QTRY_COMPARE(rig.rig.service.downloads.size(), 1);
        QTRY_VERIFY(rig.control<Spinner>(0, "progressIndicator")->isAnimating());
        QVERIFY(install->isHidden() && rig.control<QWidget>(0, "removeButton")->isHidden());
        rig.rig.service.downloads.first().progress(1'000'000, 4'000'000);
        QCOMPARE(rig.control<ElidedLabel>(0, "note")->text(), u"Downloading 1.0 of 4.0 MB"_s);
        QCOMPARE(rig.control<ThinProgressBar>(0, "progressBar")->permille(), 250);
        QVERIFY(rig.control<ThinProgressBar>(0, "progressBar")->isVisible());

        rig.rig.answerDownload(InstallRig::archiveOf(u"p00000"_s, 140));
        QTRY_COMPARE(install->text(), u"Up To Date"_s);
        QVERIFY(install->isVisible() && !install->isEnabled());
        auto *remove = rig.control<SymbolButton>(0, "removeButton");
        QCOMPARE(remove->accessibleName(), u"Remove Package p00000"_s);
        QTRY_COMPARE(QApplication::focusWidget(), remove); // the keyboard stayed at its row
        press(Qt::Key_Space);
        QTRY_COMPARE(install->text(), u"Install"_s);
        QTRY_VERIFY(install->isVisible() && install->isEnabled());

        rig.control<SymbolButton>(2, "infoButton")->click();
        QCOMPARE(rig.urls.opened, QList<QUrl>{QUrl(u"https://x/p00002"_s)});
    }

    void saysWhyAnInstallFailed()
    {
        PanelRig rig(true);
        fillCatalogue(rig, 3);
        rig.open();
        const auto *note = rig.control<ElidedLabel>(0, "note");
        const auto fail = [&](const QByteArray &body) {
            rig.control<PanelButton>(0, "actionButton")->click();
            QTRY_COMPARE(rig.rig.service.downloads.size(), 1);
            QTRY_VERIFY(rig.control<Spinner>(0, "progressIndicator")->isAnimating());
            QVERIFY(!note->text().contains(u"archive"_s)); // of the attempt before
            rig.rig.answerDownload(body);
            QTRY_VERIFY(rig.control<PanelButton>(0, "actionButton")->isVisible());
        };
        fail(InstallRig::damagedArchiveOf(u"p00000"_s, 140));
        QTRY_VERIFY(note->isVisible());
        QCOMPARE(note->text(), u"InDesign CC 2019: the archive is damaged"_s);
        QVERIFY(note->toolTip().contains(u"p00000, InDesign CC 2019: the archive is damaged"_s));
        QCOMPARE(rig.control<PanelButton>(0, "actionButton")->text(), u"Install"_s);
        QVERIFY(rig.panel->packagesTab()->list().controllerAt(0)->view()->accessibleName().endsWith(
            u"the archive is damaged"_s));
        QVERIFY(note->geometry().bottom() < note->parentWidget()->height());

        fail("too short");
        QTRY_COMPARE(note->text(), u"wrong length"_s);
        QTRY_VERIFY(!rig.rig.packages.updating());
        QVERIFY(note->isVisible()); // statuses that are known again are no reason to forget
        Q_EMIT rig.rig.packages.checkFinished(true);
        QTRY_VERIFY(note->isHidden());
    }

    void thousandsOfRowsAreNotBuilt()
    {
        PanelRig rig(true);
        fillCatalogue(rig, 2000);
        rig.open();
        PackageList &list = rig.panel->packagesTab()->list();
        QCOMPARE(list.rows().size(), 2000);
        const auto *area = rig.child<QScrollArea>("brevokView");
        QCOMPARE(area->widget()->height(), 2000 * 52);
        QVERIFY(list.controllerCount() < 30);

        rig.control<PanelButton>(0, "actionButton")->setFocus();
        press(Qt::Key_Down);
        QCOMPARE(QApplication::focusWidget(), rig.control<QWidget>(1, "removeButton")); // it has no action
        for (const Qt::Key key : {Qt::Key_End, Qt::Key_Up}) {
            press(key);
        }
        QVERIFY(rig.control<QWidget>(1998, "actionButton") != nullptr);
        QVERIFY(list.controllerAt(1998)->view()->isAncestorOf(QApplication::focusWidget()));
        QCOMPARE(list.controllerAt(1998)->row().prefix(), u"p01998"_s);
        QVERIFY(list.controllerCount() < 50);
        press(Qt::Key_Home);
        for (int i = 0; i < 60; ++i) { // the Tab key builds the rows that it comes to
            press(Qt::Key_Tab);
            QVERIFY(rig.child<QWidget>("packagesView")->isAncestorOf(QApplication::focusWidget()));
        }
        QVERIFY(area->verticalScrollBar()->value() > 0);

        rig.rig.packages.updateWithArray({PanelRig::package(u"AAA"_s, u"new"_s)});
        QTRY_COMPARE(list.rows().size(), 2001);
        QCOMPARE(area->verticalScrollBar()->value(), 0); // another height: back to the top
    }
};

QTEST_MAIN(TestPanelRows)
#include "test_panel_rows.moc"
