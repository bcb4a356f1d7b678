// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "PreferencesDesk.h"
#include "support/servers/FaultServer.h"
#include "WindowTest.h"

#include "ui/widgets/PanelButtons.h"

#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QStackedWidget>
#include <QToolBar>
#include <QToolButton>

using namespace brevok;
using namespace brevok::testing;
using Page = BrevokPreferencesController::Page;

namespace {

QAccessibleInterface *told(QObject *object)
{
    return QAccessible::queryAccessibleInterface(object);
}

// Where the parts of the form begin.
QList<QRect> formPlaces(const Desk &desk)
{
    QList<QRect> found;
    for (const char *name : {"orlecId", "password", "actionButton", "createAccountLink", "brevokStatus"}) {
        const auto *widget = desk.find<QWidget>(name);
        found.append({widget->mapTo(&*desk.window, QPoint()), QSize(widget->width(), 1)});
    }
    return found;
}

} // namespace

class PreferencesTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void pagesAreSwitched()
    {
        Desk desk;
        desk.open();
        auto *tabs = desk.find<QStackedWidget>("tabView");
        QCOMPARE(desk.window->page(), Page::Account);
        desk.find<QAction>("settingsItem")->trigger();
        QCOMPARE(tabs->currentWidget()->objectName(), u"settingsPage"_s);
        desk.window->showTargets();
        QCOMPARE(tabs->currentIndex(), 2);
        QCOMPARE(tabs->currentWidget()->objectName(), u"targetsPage"_s);
        QVERIFY(desk.find<QAction>("targetsItem")->isChecked());
        QTest::keyClick(&*desk.window, Qt::Key_Escape);
        QVERIFY(!desk.window->isVisible());
    }

    void pagesAreAnnouncedAsTabs()
    {
        Desk desk;
        desk.open();
        auto *toolbar = desk.find<QToolBar>("toolbar");
        QCOMPARE(told(toolbar)->role(), QAccessible::PageTabList);
        QCOMPARE(told(toolbar)->text(QAccessible::Name), u"Pages"_s);
        const QStringList names{u"Account"_s, u"Targets"_s, u"Settings"_s};
        const QList<QAction *> items = toolbar->actions();
        QCOMPARE(items.size(), names.size());
        for (qsizetype number = 0; number < names.size(); ++number) {
            QAccessibleInterface *tab = told(toolbar->widgetForAction(items.at(number)));
            QCOMPARE(tab->role(), QAccessible::PageTab);
            QCOMPARE(tab->text(QAccessible::Name), names.at(number));
            QCOMPARE(tab->state().selected, number == 0);
            QVERIFY(!tab->state().checkable);
            tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
            QVERIFY(tab->state().selected);
            QAccessibleInterface *page = told(desk.find<QStackedWidget>("tabView")->currentWidget());
            QCOMPARE(page->role(), QAccessible::PropertyPage);
            QCOMPARE(page->text(QAccessible::Name), names.at(number));
            items.first()->trigger();
        }
    }

    void switchesTellWhenTheyTakeEffect()
    {
        const QDateTime night(QDate(2026, 11, 23), QTime(2, 30));
        Desk desk;
        desk.open();
        desk.window->switchTab(Page::Settings);
        for (const char *name : {"notifications", "autoUpdate"}) {
            const auto *note = desk.find<QLabel>((QByteArray(name) + "Note").constData());
            QVERIFY2(note->isVisible() && note->text().startsWith(u"Used by scheduled updates"_s), name);
            QVERIFY2(note->text().contains(u"not set up"_s), name);
            QCOMPARE(desk.find<QCheckBox>(name)->accessibleDescription(), note->text());
        }
        desk.timerRuns.next = night;
        desk.window->hide();
        desk.window->showWindow();
        QVERIFY(desk.find<QLabel>("autoUpdateNote")
                    ->text()
                    .contains(QLocale().toString(night, QLocale::ShortFormat)));
    }

    // Nothing of the form moves or loses the focus while the service is asked, nor after it refused.
    void formStaysWhereItIs()
    {
        FaultServer server;
        const QString signin = u"/api/machine/signin"_s;
        const ServiceConfiguration service{.baseUrl = server.url(),
            .extraAuthorities = TestCertificates::shared().authorities(),
            .reachabilityHost = u"public.example"_s};
        Desk desk({}, service);
        desk.open();
        QVERIFY(desk.find<PanelButton>("actionButton")->isProminent());
        const QList<QRect> before = formPlaces(desk);
        const auto *said = desk.find<QLabel>("brevokStatus");
        auto *button = desk.find<QPushButton>("actionButton");
        auto *password = desk.find<QLineEdit>("password");
        password->setFocus();
        server.on(signin, Response::of(401, "<html>"));
        desk.signIn(u"eve@example.com"_s);
        QTRY_COMPARE(said->text(), u"Wrong user name or password."_s);
        QVERIFY(desk.presenter.shown.isEmpty());
        QCOMPARE(formPlaces(desk), before);
        QCOMPARE(desk.window->focusWidget(), password);
        button->setFocus();
        QTest::keyClick(button, Qt::Key_Space);
        QTRY_VERIFY(button->isEnabled() && !desk.session->isUpdating());
        QCOMPARE(desk.window->focusWidget(), button);

        password->setFocus();
        server.on(signin, Response::silent());
        desk.signIn({});
        QTRY_COMPARE(said->text(), u"Contacting the service…"_s);
        QCOMPARE(formPlaces(desk), before);
        QCOMPARE(desk.window->focusWidget(), password);
        const QString typed = password->text();
        QTest::keyClicks(password, u"x"_s); // too late
        QCOMPARE(password->text(), typed);
    }

    void checkBoxesAreInStep()
    {
        Desk desk;
        desk.open();
        desk.window->switchTab(Page::Settings);
        const QHash<const char *, QString> keys{{"notifications", u"OrlecShowNotifications"_s},
            {"checkForUpdates", u"SUEnableAutomaticChecks"_s}, {"autoUpdate", u"OrlecAutoUpdate"_s},
            {"logLevel", u"OrlecLogLevel"_s}, {"startAtLogin", u"OrlecStartAtLogin"_s}};
        for (auto key = keys.cbegin(); key != keys.cend(); ++key) {
            auto *box = desk.find<QCheckBox>(key.key());
            QVERIFY2(!box->isChecked(), key.key());
            QTest::keyClick(box, Qt::Key_Space);
            QVERIFY2(desk.settings.boolValue(key.value()), key.key());
        }
        QCOMPARE(desk.settings.integerValue(u"OrlecLogLevel"_s), 1);
        // From outside.
        for (const Setting &setting : allSettings()) {
            desk.access.setSetting(setting, setting.valueFrom(0), {});
        }
        for (auto key = keys.cbegin(); key != keys.cend(); ++key) {
            QTRY_VERIFY2(!desk.find<QCheckBox>(key.key())->isChecked(), key.key());
        }
        desk.access.setSetting(*findSetting(u"logLevel"_s), 3, {});
        QTRY_VERIFY(desk.find<QCheckBox>("logLevel")->isChecked());
    }

    void whatTheAdministratorDecidesIsDisabled()
    {
        Desk desk;
        desk.settings.lock({{u"OrlecAutoUpdate"_s, true}, {u"OrlecLogLevel"_s, 1}});
        desk.open();
        desk.window->switchTab(Page::Settings);
        for (const char *name : {"autoUpdate", "logLevel"}) {
            auto *box = desk.find<QCheckBox>(name);
            QVERIFY2(box->isChecked() && !box->isEnabled() && !box->toolTip().isEmpty(), name);
        }
        for (const char *name : {"startAtLogin", "notifications", "checkForUpdates"}) {
            const auto *box = desk.find<QCheckBox>(name);
            QVERIFY2(box->isEnabled() && box->toolTip().isEmpty(), name);
        }
    }

    void whatCannotBeStoredIsSaid()
    {
        Desk desk;
        desk.open();
        desk.window->switchTab(Page::Settings);
        const auto *said = desk.find<QLabel>("settingsProblem");
        QVERIFY(said->isHidden());
        auto *box = desk.find<QCheckBox>("autoUpdate");
        desk.settings.setProblem(u"<b>full</b>"_s);
        QTest::keyClick(box, Qt::Key_Space);
        QVERIFY(said->isVisible() && said->text().endsWith(u"Reason: <b>full</b>"_s));
        QVERIFY(box->isChecked()); // it counts all the same
        desk.settings.setProblem({});
        QVERIFY(said->isHidden());

        box = desk.find<QCheckBox>("startAtLogin");
        desk.access.loginItemProblem = u"no room"_s;
        QTest::keyClick(box, Qt::Key_Space);
        QTRY_VERIFY(said->isVisible() && said->text().endsWith(u"no room"_s));
        QVERIFY(!box->isChecked()); // it has no effect
        desk.access.loginItemProblem.clear();
        QTest::keyClick(box, Qt::Key_Space);
        QTRY_VERIFY(said->isHidden() && box->isChecked());
    }

    void accountPageFollowsTheSession()
    {
        Desk signedOut;
        signedOut.open();
        auto *email = signedOut.find<QLineEdit>("orlecId");
        auto *password = signedOut.find<QLineEdit>("password");
        QCOMPARE(signedOut.find<QPushButton>("actionButton")->text(), u"Sign In"_s);
        email->setFocus();
        QTest::keyClick(email, Qt::Key_Return);
        QCOMPARE(signedOut.window->focusWidget(), email);
        QTest::keyClicks(email, u"eve@example.com"_s);
        QTest::keyClick(email, Qt::Key_Return);
        QCOMPARE(signedOut.window->focusWidget(), password);
        QTest::keyClick(password, Qt::Key_Return);
        QVERIFY(signedOut.presenter.shown.isEmpty());
        QTest::keyClicks(password, u"secret"_s);
        QTest::keyClick(password, Qt::Key_Return);
        QTRY_COMPARE(signedOut.presenter.shown.size(), 1); // the network is down
        QTRY_COMPARE(signedOut.find<QLabel>("brevokStatus")->text(),
            u"Network is unreachable. Is your internet connection down?"_s);
        QCOMPARE(signedOut.session->orlecId(), u"eve@example.com"_s);
        QCOMPARE(email->text(), u"eve@example.com"_s);
        signedOut.click("createAccountLink");
        QCOMPARE(
            signedOut.opener.opened, QList<QUrl>{QUrl(u"https://service.example/base/account/register"_s)});

        Desk signedIn(u"held-id"_s);
        signedIn.open();
        QCOMPARE(signedIn.find<QPushButton>("actionButton")->text(), u"Sign Out"_s);
        QCOMPARE(signedIn.find<QLabel>("signedInAs")->text(), u"Signed in as ada@example.com."_s);
        QVERIFY(!signedIn.find<QLineEdit>("orlecId")->isVisible());
        QVERIFY(!signedIn.find<QLineEdit>("password")->isVisible());
        const auto *page = signedIn.find<QStackedWidget>("tabView")->currentWidget();
        QVERIFY(signedIn.find<QLabel>("signedInAs")->mapTo(page, QPoint()).y() <= 24); // no blank band above
        signedIn.click("actionButton");
        QTRY_COMPARE(signedIn.presenter.shown.size(), 1);
    }
};

QTEST_MAIN(PreferencesTest)
#include "test_preferences.moc"
