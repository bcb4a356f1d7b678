// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "PanelRig.h"
#include "WindowTest.h"

#include "support/servers/FaultServer.h"
#include "ui/panel/AnimatedTabView.h"
#include "ui/panel/BrevokBackgroundView.h"
#include "ui/panel/NoticeView.h"
#include "ui/widgets/PanelButtons.h"
#include "ui/widgets/PanelLabels.h"
#include "ui/widgets/Spinner.h"

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
    void opensUnderItsItemAndCloses()
    {
        PanelRig rig(true);
        const QSignalSpy spy(rig.panel.get(), &PanelSurface::hasActivePanelChanged);
        QVERIFY(rig.panel->window() == nullptr); // built when first opened
        rig.open();
        BrevokPanel *window = rig.panel->window();
        QCOMPARE(window->geometry(), rig.panel->place().panel);
        QCOMPARE(rig.child<BrevokBackgroundView>("backgroundView")->arrowX(),
            rig.item.frame->x() + 12 - window->x());
        QVERIFY(rig.panel->hasActivePanel());
        rig.panel->setHasActivePanel(true); // unchanged: nothing happens
        QCOMPARE(spy.size(), 1);

        press(Qt::Key_Escape);
        QVERIFY(!rig.panel->hasActivePanel());
        QVERIFY(window->isVisible()); // fading
        QTRY_VERIFY(!window->isVisible());
        QCOMPARE(spy.size(), 2);

        rig.hasItem = false;
        rig.open();
        QCOMPARE(window->geometry(), rig.panel->place().panel);
        window->close();
        QVERIFY(!rig.panel->hasActivePanel());
        rig.panel->openPanel(); // another copy asks while the panel is fading away
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
        other.hide();

        rig.panel->setKeepOpenPanel(true);
        focus(other);
        QTRY_VERIFY(!rig.panel->hasActivePanel());
        QVERIFY(window->isVisible() && !window->isFading());
        rig.panel->setKeepOpenPanel(false);
        QVERIFY(rig.panel->hasActivePanel()); // it is still there, so it can be closed again

        focus(*window);
        const QSignalSpy spy(rig.panel.get(), &PanelSurface::hasActivePanelChanged);
        other.activateWindow();
        QTRY_VERIFY(!rig.panel->hasActivePanel() && window->isFading());
        // The click on the item that took the focus does not open the panel again.
        rig.panel->setHasActivePanel(true);
        QVERIFY(!rig.panel->hasActivePanel());
        QVERIFY(!spy.last().first().toBool());
        QTRY_VERIFY(!window->isVisible());
        rig.open();
        QVERIFY(window->isVisible());
    }

    // As when a screen shrinks, or goes and takes the tray along.
    void followsItsScreens()
    {
        OpenPanel rig;
        const BrevokPanel *window = rig.panel->window();
        QScreen *screen = QGuiApplication::primaryScreen();
        rig.item.frame = QRect(300, 0, 24, 24);
        Q_EMIT screen->availableGeometryChanged(screen->availableGeometry());
        QTRY_COMPARE(window->geometry(), rig.panel->place().panel);
        QVERIFY(qAbs(window->geometry().center().x() - 312) <= 1);
        // The tray goes, and the panel stays; where it stands in no screen any more, it moves.
        const QRect before = window->geometry();
        rig.hasItem = false;
        Q_EMIT qGuiApp->screenRemoved(screen);
        QCoreApplication::processEvents();
        QCOMPARE(window->geometry(), before);
        rig.panel->window()->move(screen->geometry().bottomRight());
        Q_EMIT qGuiApp->screenRemoved(screen);
        QTRY_COMPARE(window->geometry(), rig.panel->place().panel);
        press(Qt::Key_Escape);
        QTRY_VERIFY(!window->isVisible());
        Q_EMIT screen->geometryChanged(screen->geometry());
        QCoreApplication::processEvents();
        QVERIFY(!window->isVisible());
    }

    void logsTheSlowOpening()
    {
        PanelRig rig(true);
        rig.modifiers = Qt::ShiftModifier | Qt::AltModifier;
        rig.open();
        QVERIFY(LogCapture::mentions(u"Icon is at {{600, 24}, {24, 24}}\n\tMenu is on screen {{0, 0}, {"_s));
    }

    void signsInByKeyboard()
    {
        FaultServer server(TestCertificates::shared().valid());
        server.on(u"/api/machine/signin"_s, [](const Request &request) {
            return Response::ok(request.body.contains("\"right\"") ? R"({"ErrorCode":0,"SessionId":"new"})"
                                                                   : R"({"ErrorCode":2})");
        });
        server.on(u"/api/machine/signout"_s, Response::ok(R"({"ErrorCode":0})"));
        PanelRig rig(false, server.url(), TestCertificates::shared().authorities());
        rig.open();
        QVERIFY(QTest::qWaitForWindowActive(rig.panel->window()));
        auto *email = rig.child<QLineEdit>("orlecIdField");
        auto *password = rig.child<QLineEdit>("passwordField");
        QCOMPARE(QApplication::focusWidget(), email);
        press(Qt::Key_Return); // nothing to go on with
        QCOMPARE(QApplication::focusWidget(), email);
        QTest::keyClicks(QApplication::focusWidget(), u"ada@example.com"_s);
        press(Qt::Key_Return);
        QCOMPARE(QApplication::focusWidget(), password);
        press(Qt::Key_Escape);
        QTRY_VERIFY(!rig.panel->window()->isVisible());
        QWidget other;
        focus(other);
        rig.open();
        QCOMPARE(email->text(), u"ada@example.com"_s); // what was typed is kept
        QTRY_COMPARE(QApplication::focusWidget(), password);
        QTest::keyClicks(QApplication::focusWidget(), u"wrong"_s);
        press(Qt::Key_Return);
        QVERIFY(password->isHidden() && !email->isEnabled());
        QVERIFY(rig.child<Spinner>("progressIndicator")->isAnimating());
        QTRY_COMPARE(rig.rig.presenter.shown.size(), 1);
        QTRY_VERIFY(password->isVisible());
        QTRY_COMPARE(QApplication::focusWidget(), password);
        QCOMPARE(email->text(), u"ada@example.com"_s);

        QTest::keyClicks(QApplication::focusWidget(), u"right"_s);
        press(Qt::Key_Return);
        auto *tabs = rig.child<AnimatedTabView>("tabView");
        QTRY_COMPARE(tabs->currentWidget(), rig.child<QWidget>("packagesTab"));
        QVERIFY(password->text().isEmpty());

        // Signed out under the user's eyes: the tab changes when the panel is closed.
        rig.session->signout();
        QTRY_VERIFY(rig.session->sessionId().isNull());
        QCOMPARE(tabs->currentWidget(), rig.child<QWidget>("packagesTab"));
        QCOMPARE(rig.panel->packagesTab()->notice(), NoticeKind::SignedOut);
        rig.panel->setHasActivePanel(false);
        QTRY_COMPARE(tabs->currentWidget(), rig.child<QWidget>("accountTab"));
    }

    // Nothing pops up about a reply that is not understood: the form says it, until the next attempt.
    void saysWhySigningInFailed()
    {
        FaultServer server(TestCertificates::shared().valid());
        Response answer = Response::of(401, "<html>Go away</html>");
        server.on(u"/api/machine/signin"_s, [&answer](const Request &) { return answer; });
        PanelRig rig(false, server.url(), TestCertificates::shared().authorities());
        rig.open();
        auto *failure = rig.child<FailureLabel>("signInFailure");
        const auto attempt = [&rig] {
            rig.child<QLineEdit>("orlecIdField")->setText(u"ada@example.com"_s);
            rig.child<QLineEdit>("passwordField")->setText(u"analytical"_s);
            rig.panel->signIn();
        };
        QVERIFY(failure->isHidden());
        const auto *email = rig.child<QLineEdit>("orlecIdField");
        const int place = email->mapTo(rig.panel->window(), QPoint()).y();
        const auto formStays = [&] {
            QCoreApplication::processEvents();
            return email->mapTo(rig.panel->window(), QPoint()).y() == place;
        };
        attempt();
        QVERIFY(rig.child<QWidget>("progressBox")->isVisible() && formStays());
        QTRY_COMPARE(failure->text(), u"Wrong user name or password."_s);
        QVERIFY(failure->isVisible() && rig.rig.presenter.shown.isEmpty());
        QTRY_VERIFY(failure->height() >= failure->heightForWidth(failure->width()));
        QVERIFY(formStays());

        answer = Response::ok("<html>Welcome</html>");
        attempt();
        QTRY_COMPARE(failure->text(), u"Unexpected server response."_s);

        answer = Response::ok(R"({"ErrorCode":1,"ErrorMessage":")" + QByteArray(2000, 'x') + R"("})");
        attempt();
        QVERIFY(failure->isHidden());
        QTRY_VERIFY(failure->isVisible() && failure->text().size() < 400);
        QVERIFY(failure->toolTip().size() > 1000);
        const QRect inWindow(failure->mapTo(rig.panel->window(), QPoint()), failure->size());
        QTRY_VERIFY(rig.panel->window()->rect().contains(inWindow));

        answer = Response::ok(R"({"ErrorCode":0,"SessionId":"new"})");
        attempt();
        QTRY_COMPARE(rig.session->sessionId(), u"new"_s);
        QVERIFY(failure->isHidden());
    }

    void showsHostileNamesAsText()
    {
        PanelRig rig(true);
        rig.rig.addTarget(u"Adobe InDesign"_s, u"140"_s);
        const QString name = u"<img src='x'>\nשלום 🎉 "_s + QString(300, u'w');
        rig.rig.packages.updateWithArray({PanelRig::package(name, u"a"_s, QString(300, u'9')),
            PanelRig::package(u"z"_s, u"b"_s, u"1"_s, u"javascript:alert(1)"_s)});
        rig.open();
        auto *label = rig.control<ElidedLabel>(0, "name");
        QVERIFY(label->text().startsWith(u"<img src='x'> שלום"_s));
        QVERIFY(label->toolTip().contains(u"&lt;img src='x'&gt;"_s));
        QVERIFY(label->toolTip().remove(QChar(0x200B)).contains(QString(300, u'9')));
        QLabel tip(label->toolTip()); // as tool tips are shown
        tip.setWordWrap(true);
        QVERIFY2(tip.sizeHint().width() < 700, qPrintable(QString::number(tip.sizeHint().width())));
        QCOMPARE(rig.panel->window()->width(), PanelGeometry::width);
        QVERIFY(rig.control<ElidedLabel>(1, "name")->toolTip().isEmpty());
        QVERIFY(rig.control<PanelButton>(1, "actionButton")->isHidden()); // nothing is known of it
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

    // In the panel, with the cause, until the next attempt or a good list; beside it no second word of it.
    void saysWhyTheCheckFailed()
    {
        for (const bool signedIn : {true, false}) {
            PanelRig rig(signedIn);
            fillCatalogue(rig, 1);
            rig.open();
            const auto *view = rig.child<NoticeView>("checkView");
            const auto answer = [&rig](int status, const QByteArray &body) {
                rig.rig.service.answerList({.status = status, .body = body, .headers = {}, .error = {}});
            };
            rig.rig.service.lists.clear();
            QVERIFY(view->isHidden());
            rig.panel->checkPlugInUpdates();
            answer(200, "[]");
            QVERIFY(view->isHidden());
            answer(503, {});
            QTRY_VERIFY(view->isVisible());
            QCOMPARE(view->findChild<QLabel *>(u"noticeText"_s)->text(),
                u"Server responded with HTTP code: 503."_s);
            QTRY_COMPARE(
                rig.panel->packagesTab()->notice(), signedIn ? NoticeKind::None : NoticeKind::SignedOut);
            view->findChild<PanelButton *>(u"noticeButton"_s)->click();
            QVERIFY(view->isHidden());
            answer(200, "<html>");
            answer(200, "[]");
            QTRY_COMPARE(
                view->findChild<QLabel *>(u"noticeText"_s)->text(), u"Unexpected server response."_s);
            QVERIFY(view->isVisible());
            rig.rig.packages.checkForUpdates();
            answer(200, "[]");
            QTRY_VERIFY(view->isHidden());
            QVERIFY(rig.rig.service.lists.isEmpty());
        }
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
        auto *button = rig.child<NoticeView>("updatesView")->findChild<PanelButton *>(u"noticeButton"_s);
        QCOMPARE(rig.panel->packagesTab()->notice(), NoticeKind::NoTargets);
        button->click();
        QCOMPARE(targets.size(), 1);
        rig.rig.addTarget(u"Adobe InDesign"_s, u"140"_s);
        QTRY_COMPARE(rig.panel->packagesTab()->notice(), NoticeKind::Loading);
        QVERIFY(button->isHidden());
        answerLists(500);
        QTRY_COMPARE(rig.panel->packagesTab()->notice(), NoticeKind::ServiceSilent);
        button->click();
        QCOMPARE(rig.rig.service.lists.size(), 2);
        answerLists(200);
        QTRY_COMPARE(rig.panel->packagesTab()->notice(), NoticeKind::EmptyCatalogue);
        rig.routes.flags = 0;
        button->click();
        QCOMPARE(rig.panel->packagesTab()->notice(), NoticeKind::Offline);
    }

    void asksBeforeQuitting()
    {
        PanelRig rig(true);
        QSignalSpy ended(rig.panel.get(), &BrevokPanelController::terminateRequested);
        rig.open();
        rig.rig.presenter.whileShown = [&rig](const AlertContent &) {
            QVERIFY(rig.panel->keepOpenPanel());
        };
        rig.rig.presenter.answer = alertSecondButton;
        QTest::keyClick(rig.panel->window(), Qt::Key_Q, Qt::ControlModifier);
        QCOMPARE(rig.rig.presenter.shown.size(), 1);
        const AlertContent &shown = rig.rig.presenter.shown.first();
        QCOMPARE(shown.messageText, u"Are you sure you want to quit"_s);
        QCOMPARE(static_cast<int>(shown.style), 1);
        QCOMPARE(shown.buttons.at(0).title, u"Quit"_s);
        QCOMPARE(shown.buttons.at(0).key, AlertKey::Escape);
        QCOMPARE(shown.buttons.at(1).title, u"Cancel"_s);
        QCOMPARE(shown.buttons.at(1).key, AlertKey::Return);
        rig.rig.presenter.answer = alertFirstButton;
        const auto askedAgain = [&] { // the same text is shown again only when the first alert has gone
            return rig.rig.presenter.shown.size() == 2
                || (rig.panel->quit(), rig.rig.presenter.shown.size() == 2);
        };
        QTRY_VERIFY(askedAgain());
        QVERIFY(ended.isEmpty()); // on the next turn
        QTRY_COMPARE(ended.size(), 1);
        inBackground([panel = rig.panel.get()] { panel->quit(); });
        QTRY_COMPARE(ended.size(), 2);
        QCOMPARE(rig.rig.presenter.shown.size(), 2);
        QVERIFY(LogCapture::contains(u"Quit alert called from background thread."_s));
    }

    void optionsMenuCommands()
    {
        OpenPanel rig;
        QMenu &menu = rig.panel->optionsMenu()->popUpMenu();
        const auto run = [&menu](const char *name) {
            menu.findChild<QAction *>(QLatin1StringView(name))->trigger();
        };
        using Panel = BrevokPanelController;
        const std::array<std::pair<const char *, void (Panel::*)()>, 4> wishes{
            {{"showSettings", &Panel::showSettingsRequested}, {"showAbout", &Panel::showAboutRequested},
                {"showBugReporter", &Panel::showBugReporterRequested},
                {"checkAppUpdate", &Panel::checkAppUpdateRequested}}};
        for (const auto &[name, wish] : wishes) {
            const QSignalSpy spy(rig.panel.get(), wish);
            run(name);
            QCOMPARE(spy.size(), 1);
        }
        run("showAccount");
        run("showHelpPage");
        rig.panel->createAccount();
        QCOMPARE(rig.urls.opened,
            (QList<QUrl>{QUrl(u"https://localhost:1/base/account/signin"_s), QUrl(u"https://help.example/"_s),
                QUrl(u"https://localhost:1/base/account/register"_s)}));
        rig.rig.service.lists.clear();
        const QSignalSpy progress(&rig.rig.packages, &BrevokPackages::updateProgressWanted);
        run("checkPlugInUpdates");
        QCOMPARE(progress.size(), 1);
        QCOMPARE(rig.rig.service.lists.size(), 2);
        QCOMPARE(rig.rig.service.lists.at(0).path, u"/api/plugin/list"_s);

        QCOMPARE(rig.panel->optionsMenu()->menuColor(), QColor(Qt::white));
        rig.child<SymbolButton>("popUpButton")->click();
        QTRY_VERIFY(menu.isVisible());
        QCOMPARE(rig.panel->optionsMenu()->menuColor(), QColor(Qt::black));
        QVERIFY(rig.panel->hasActivePanel());
        menu.hide();
        QCOMPARE(rig.panel->optionsMenu()->menuColor(), QColor(Qt::white));
    }

    void followsThePalette()
    {
        OpenPanel rig(2);
        const QPalette usual = QApplication::palette();
        QPalette dark(QColor(40, 40, 40));
        QApplication::setPalette(dark);
        QTRY_COMPARE(
            rig.child<BrevokBackgroundView>("backgroundView")->fillColor(), dark.color(QPalette::Window));
        const QImage shown = rig.panel->window()->grab().toImage();
        QCOMPARE(shown.pixelColor(shown.width() / 2, shown.height() - 40), dark.color(QPalette::Window));
        QApplication::setPalette(usual);
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
