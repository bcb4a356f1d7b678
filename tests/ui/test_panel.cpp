// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "PanelRig.h"
#include "WindowTest.h"

#include "support/servers/FaultServer.h"
#include "ui/panel/BrevokBackgroundView.h"
#include "ui/panel/NoticeView.h"
#include "ui/widgets/PanelButtons.h"
#include "ui/widgets/PanelLabels.h"

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

class TestPanel final : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void opensAndCloses()
    {
        PanelRig rig(true);
        const QSignalSpy spy(rig.panel.get(), &PanelSurface::hasActivePanelChanged);
        QVERIFY(rig.panel->window() == nullptr); // made when first opened
        rig.hasItem = false;
        rig.open();
        rig.panel->setHasActivePanel(true); // unchanged: nothing happens
        QCOMPARE(spy.size(), 1);
        BrevokPanel *window = rig.panel->window();
        window->close();
        QVERIFY(!rig.panel->hasActivePanel() && window->isVisible()); // fading
        rig.panel->openPanel(); // another copy asks meanwhile
        QTRY_COMPARE(window->geometry(), rig.panel->place().panel);
        QTest::qWait(PanelGeometry::orderOutMilliseconds); // nothing is to happen
        QVERIFY(window->isVisible() && rig.panel->hasActivePanel());
    }

    void losesTheFocus()
    {
        OpenPanel rig;
        BrevokPanel *window = rig.panel->window();
        QVERIFY(QTest::qWaitForWindowActive(window));
        {
            QDialog sheet(window);
            sheet.setWindowModality(Qt::WindowModal);
            focus(sheet);
            QVERIFY(rig.panel->hasActivePanel());
        }
        focus(*window);
        // What window managers do when a sheet has ended: another window has the focus for a moment.
        QWidget other;
        focus(other);
        QVERIFY(rig.panel->hasActivePanel() && !window->isFading());
        focus(*window);
        other.activateWindow();
        QTRY_VERIFY(!rig.panel->hasActivePanel() && window->isFading());
        // The click on the item that took the focus does not open the panel again.
        const QSignalSpy spy(rig.panel.get(), &PanelSurface::hasActivePanelChanged);
        rig.panel->setHasActivePanel(true);
        QVERIFY(!rig.panel->hasActivePanel());
        QVERIFY(!spy.last().first().toBool());
        QTRY_VERIFY(!window->isVisible());
        rig.open();
    }

    // As when a screen shrinks, or goes and takes the tray along.
    void followsItsScreens()
    {
        OpenPanel rig;
        BrevokPanel *window = rig.panel->window();
        QScreen *screen = QGuiApplication::primaryScreen();
        rig.item.frame = QRect(300, 0, 24, 24);
        Q_EMIT screen->availableGeometryChanged(screen->availableGeometry());
        QTRY_COMPARE(window->geometry(), rig.panel->place().panel);
        QCOMPARE(rig.child<BrevokBackgroundView>("backgroundView")->arrowX(), 312 - window->x());
        // The tray goes, and the panel stays; where it stands in no screen any more, it moves.
        const QRect before = window->geometry();
        rig.hasItem = false;
        Q_EMIT qGuiApp->screenRemoved(screen);
        QCoreApplication::processEvents();
        QCOMPARE(window->geometry(), before);
        window->move(screen->geometry().bottomRight());
        Q_EMIT qGuiApp->screenRemoved(screen);
        QTRY_COMPARE(window->geometry(), rig.panel->place().panel);
        press(Qt::Key_Escape);
        QTRY_VERIFY(!window->isVisible());
        Q_EMIT screen->geometryChanged(screen->geometry());
        QCoreApplication::processEvents();
        QVERIFY(!window->isVisible());
    }

    // Nothing pops up about a reply that is not understood: the form says it, until the next attempt, and
    // stays where it is.
    void saysWhySigningInFailed()
    {
        FaultServer server(TestCertificates::shared().valid());
        Response answer;
        server.on(u"/api/machine/signin"_s, [&answer](const Request &) { return answer; });
        PanelRig rig(false, server.url(), TestCertificates::shared().authorities());
        rig.open();
        QVERIFY(QTest::qWaitForWindowActive(rig.panel->window()));
        const auto *email = rig.child<QLineEdit>("orlecIdField");
        auto *password = rig.child<QLineEdit>("passwordField");
        auto *failure = rig.child<FailureLabel>("signInFailure");
        const int place = email->mapTo(rig.panel->window(), QPoint()).y();
        const auto formStays = [&] {
            QCoreApplication::processEvents();
            return email->mapTo(rig.panel->window(), QPoint()).y() == place;
        };
        QTest::keyClicks(QApplication::focusWidget(), u"ada@example.com"_s);
        press(Qt::Key_Return);
        press(Qt::Key_Escape);
        QTRY_VERIFY(!rig.panel->window()->isVisible());
        rig.open();
        QTRY_COMPARE(QApplication::focusWidget(), password); // what was typed is kept
        const QList<std::pair<Response, QString>> refusals{
            {Response::of(401, "<html>Go away</html>"), u"Wrong user name or password."_s},
            {Response::ok("<html>Welcome</html>"), u"Unexpected server response."_s},
            {Response::ok(R"({"ErrorCode":1,"ErrorMessage":")" + QByteArray(2000, 'x') + R"("})"), u"x"_s}};
        for (const auto &[refusal, told] : refusals) {
            answer = refusal;
            QTest::keyClicks(QApplication::focusWidget(), u"secret"_s);
            press(Qt::Key_Return);
            QVERIFY(password->isHidden() && !email->isEnabled() && failure->isHidden() && formStays());
            QTRY_VERIFY(failure->isVisible() && failure->text().startsWith(told));
            QTRY_COMPARE(QApplication::focusWidget(), password);
            QTRY_VERIFY(failure->height() >= failure->heightForWidth(failure->width()));
            QVERIFY(formStays() && rig.rig.presenter.shown.isEmpty());
            QCOMPARE(email->text(), u"ada@example.com"_s);
        }
        QVERIFY(failure->text().size() < 400 && failure->toolTip().size() > 1000);
        const QRect inWindow(failure->mapTo(rig.panel->window(), QPoint()), failure->size());
        QVERIFY(rig.panel->window()->rect().contains(inWindow));

        answer = Response::ok(R"({"ErrorCode":0,"SessionId":"new"})");
        press(Qt::Key_Return);
        QTRY_COMPARE(rig.session->sessionId(), u"new"_s);
        QVERIFY(failure->isHidden() && password->text().isEmpty());
    }

    void showsHostileNamesAsText()
    {
        PanelRig rig(true);
        const QString name = u"<img src='x'>\nשלום 🎉 "_s + QString(300, u'w');
        rig.rig.packages.updateWithArray({PanelRig::package(name, u"a"_s, QString(300, u'9'))});
        rig.open();
        auto *label = rig.control<ElidedLabel>(0, "name");
        QVERIFY(label->text().startsWith(u"<img src='x'> שלום"_s));
        QVERIFY(label->toolTip().contains(u"&lt;img src='x'&gt;"_s));
        QVERIFY(label->toolTip().remove(QChar(0x200B)).contains(QString(300, u'9')));
        QLabel tip(label->toolTip()); // as tool tips are shown
        tip.setWordWrap(true);
        QVERIFY2(tip.sizeHint().width() < 700, qPrintable(QString::number(tip.sizeHint().width())));
        QCOMPARE(rig.panel->window()->width(), PanelGeometry::width);
        // A screen reader has the words alone.
        const QList<QWidget *> views = rig.row(0)->findChildren<QWidget *>();
        for (QWidget *view : views) {
            const QString told = QAccessible::queryAccessibleInterface(view)->text(QAccessible::Description);
            QVERIFY2(!told.contains(u"&lt;"_s) && !told.contains(QChar(0x200B)), qPrintable(told));
        }
    }

    void saysThatNothingCanBeStored()
    {
        PanelRig rig(false);
        rig.settings.setProblem(u"early"_s);
        rig.open();
        const auto *view = rig.child<NoticeView>("storageView");
        const auto *text = view->findChild<QLabel *>(u"noticeText"_s);
        QVERIFY(view->isVisible() && text->text().endsWith(u"Reason: early"_s));
        rig.settings.setProblem({});
        QVERIFY(view->isHidden());
        // The state, too, and no alert says so; whoever made room need not wait.
        QFile::remove(rig.rig.scratch.folder.filePath(u"data/state.sqlite"_s));
        QVERIFY(QDir(rig.rig.scratch.folder.path()).mkpath(u"data/state.sqlite"_s));
        rig.rig.state.commit({{u"Key"_s, u"entry"_s, Record()}});
        QTRY_VERIFY(view->isVisible());
        QVERIFY(rig.rig.presenter.shown.isEmpty());
        QVERIFY(QDir(rig.rig.scratch.folder.path()).rmdir(u"data/state.sqlite"_s));
        view->findChild<PanelButton *>(u"noticeButton"_s)->click();
        QTRY_VERIFY(view->isHidden());
    }

    // In the panel, with the cause, until the next attempt or a good list.
    void saysWhyTheCheckFailed()
    {
        OpenPanel rig(1);
        const auto *view = rig.child<NoticeView>("checkView");
        const auto *cause = view->findChild<QLabel *>(u"noticeText"_s);
        const auto answer = [&rig](int status, const QByteArray &body) {
            rig.rig.service.answerList({.status = status, .body = body, .headers = {}, .error = {}});
        };
        rig.rig.service.lists.clear();
        rig.panel->checkPlugInUpdates();
        answer(200, "[]");
        QVERIFY(view->isHidden());
        answer(503, {});
        QTRY_COMPARE(cause->text(), u"Server responded with HTTP code: 503."_s);
        QTRY_COMPARE(rig.panel->packagesTab()->notice(), NoticeKind::None); // no second word of it
        view->findChild<PanelButton *>(u"noticeButton"_s)->click();
        QVERIFY(view->isHidden());
        answer(200, "<html>");
        answer(200, "[]");
        QTRY_COMPARE(cause->text(), u"Unexpected server response."_s);
        QVERIFY(view->isVisible());
        rig.rig.packages.checkForUpdates();
        answer(200, "[]");
        QTRY_VERIFY(view->isHidden());
        QVERIFY(rig.rig.service.lists.isEmpty());
    }

    void saysWhatToDoNext()
    {
        PanelRig rig(true);
        const QSignalSpy targets(rig.panel.get(), &BrevokPanelController::showTargetsRequested);
        rig.open();
        const auto answerLists = [&rig](int status) {
            while (!rig.rig.service.lists.isEmpty()) {
                rig.rig.service.answerList({.status = status, .body = "[]", .headers = {}, .error = {}});
            }
        };
        const PanelPackagesTab &tab = *rig.panel->packagesTab();
        auto *button = rig.child<NoticeView>("updatesView")->findChild<PanelButton *>(u"noticeButton"_s);
        QCOMPARE(tab.notice(), NoticeKind::NoTargets);
        button->click();
        QCOMPARE(targets.size(), 1);
        rig.rig.addTarget(u"Adobe InDesign"_s, u"140"_s);
        QTRY_COMPARE(tab.notice(), NoticeKind::Loading);
        QVERIFY(button->isHidden());
        answerLists(500);
        QTRY_COMPARE(tab.notice(), NoticeKind::ServiceSilent);
        button->click();
        QCOMPARE(rig.rig.service.lists.size(), 2);
        answerLists(200);
        QTRY_COMPARE(tab.notice(), NoticeKind::EmptyCatalogue);
        rig.routes.flags = 0;
        button->click();
        QCOMPARE(tab.notice(), NoticeKind::Offline);
    }

    void asksBeforeQuitting()
    {
        PanelRig rig(true);
        QSignalSpy ended(rig.panel.get(), &BrevokPanelController::terminateRequested);
        rig.panel->quit();
        const AlertContent &shown = rig.rig.presenter.shown.first();
        QCOMPARE(shown.messageText, u"Are you sure you want to quit"_s);
        QCOMPARE(shown.informativeText, u"Tolvane Brevok needs to be running to keep the Plug-Ins active."_s);
        QCOMPARE(static_cast<int>(shown.style), 1);
        QVERIFY(ended.isEmpty()); // on the next turn
        QTRY_COMPARE(ended.size(), 1);
        inBackground([panel = rig.panel.get()] { panel->quit(); });
        QTRY_COMPARE(ended.size(), 2);
        QCOMPARE(rig.rig.presenter.shown.size(), 1);
        QVERIFY(LogCapture::contains(u"Quit alert called from background thread."_s));
    }

    void optionsMenuCommands()
    {
        OpenPanel rig;
        QMenu &menu = rig.panel->optionsMenu()->popUpMenu();
        const auto run = [&menu](const char *name) {
            menu.findChild<QAction *>(QLatin1StringView(name))->trigger();
        };
        run("showAccount");
        run("showHelpPage");
        rig.panel->createAccount();
        QCOMPARE(rig.urls.opened,
            (QList<QUrl>{QUrl(u"https://localhost:1/base/account/signin"_s), QUrl(u"https://help.example/"_s),
                QUrl(u"https://localhost:1/base/account/register"_s)}));
        const QSignalSpy progress(&rig.rig.packages, &BrevokPackages::updateProgressWanted);
        run("checkPlugInUpdates");
        QCOMPARE(progress.size(), 1);

        QCOMPARE(rig.panel->optionsMenu()->menuColor(), QColor(Qt::white));
        rig.child<SymbolButton>("popUpButton")->click();
        QTRY_VERIFY(menu.isVisible());
        QCOMPARE(rig.panel->optionsMenu()->menuColor(), QColor(Qt::black));
        QVERIFY(rig.panel->hasActivePanel());
        menu.hide();
        QCOMPARE(rig.panel->optionsMenu()->menuColor(), QColor(Qt::white));
    }

    void nothingIsDrawnAroundTheShape()
    {
        BrevokBackgroundView view;
        view.resize(200, 100);
        view.setArrowX(100);
        for (const bool translucent : {true, false}) {
            view.setTranslucent(translucent);
            QImage shown(view.size(), QImage::Format_ARGB32_Premultiplied);
            shown.fill(Qt::transparent);
            view.render(&shown, {}, {}, QWidget::RenderFlags());
            QCOMPARE(shown.pixelColor(1, 1).alpha(), translucent ? 0 : 255);
            QCOMPARE(shown.pixelColor(100, 50), view.fillColor());
            if (translucent) {
                continue;
            }
            // The outline is whole: what lies inside is nowhere a neighbour of what lies outside.
            const QRegion shape = view.shape();
            for (const QRect &part : shape) {
                for (const QPoint end :
                    {part.topLeft(), part.topRight(), part.bottomLeft(), part.bottomRight()}) {
                    for (const QPoint beside : {QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)}) {
                        QVERIFY(shape.contains(end + beside) || shown.pixelColor(end) != view.fillColor());
                    }
                }
            }
        }
    }
};

QTEST_MAIN(TestPanel)
#include "test_panel.moc"
