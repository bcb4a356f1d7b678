// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "PreferencesDesk.h"
#include "support/InRow.h"
#include "support/servers/FaultServer.h"
#include "WindowTest.h"

#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QStackedWidget>
#include <QToolBar>

using namespace brevok;
using namespace brevok::testing;

namespace {

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
    // By assistive technology, which presses what is told as a tab.
    void pagesAreTabs()
    {
        Desk desk;
        desk.open();
        const auto *toolbar = desk.find<QToolBar>("toolbar");
        QObject *button = toolbar->widgetForAction(desk.find<QAction>("settingsItem"));
        QAccessibleInterface *tab = QAccessible::queryAccessibleInterface(button);
        QCOMPARE(tab->role(), QAccessible::PageTab);
        QVERIFY(!tab->state().selected && !tab->state().checkable);
        tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(tab->state().selected);
        const auto *pages = desk.find<QStackedWidget>("tabView");
        QCOMPARE(pages->currentWidget()->objectName(), u"settingsPage"_s);
    }

    void switchesTellWhenTheyTakeEffect()
    {
        const QDateTime night(QDate(2026, 11, 23), QTime(2, 30));
        Desk desk;
        desk.openSettings();
        for (const char *name : {"notifications", "autoUpdate"}) {
            const auto *note = desk.find<QLabel>((QByteArray(name) + "Note").constData());
            QVERIFY2(note->isVisible() && note->text().contains(u"not set up"_s), name);
            QCOMPARE(desk.find<QCheckBox>(name)->accessibleDescription(), note->text());
        }
        desk.timerRuns.next = night;
        desk.window->hide();
        desk.window->showWindow();
        const QString told = desk.find<QLabel>("autoUpdateNote")->text();
        QVERIFY(told.contains(QLocale().toString(night, QLocale::ShortFormat)));
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
        desk.openSettings();
        const QHash<QString, const char *> boxes{{u"OrlecShowNotifications"_s, "notifications"},
            {u"SUEnableAutomaticChecks"_s, "checkForUpdates"}, {u"OrlecAutoUpdate"_s, "autoUpdate"},
            {u"OrlecLogLevel"_s, "logLevel"}, {u"OrlecStartAtLogin"_s, "startAtLogin"}};
        for (const Setting &setting : allSettings()) {
            const InRow in(boxes[setting.key]);
            auto *box = desk.find<QCheckBox>(boxes[setting.key]);
            QVERIFY(!box->isChecked());
            QTest::keyClick(box, Qt::Key_Space);
            QVERIFY(desk.settings.boolValue(setting.key));
            desk.access.setSetting(setting, setting.valueFrom(0), {}); // from outside
            QTRY_VERIFY(!box->isChecked());
        }
        desk.access.setSetting(*findSetting(u"logLevel"_s), 3, {});
        QTRY_VERIFY(desk.find<QCheckBox>("logLevel")->isChecked());
    }

    void whatTheAdministratorDecidesIsDisabled()
    {
        Desk desk;
        desk.settings.lock({{u"OrlecLogLevel"_s, 1}});
        desk.openSettings();
        for (const char *name : {"logLevel", "startAtLogin"}) {
            const InRow in(name);
            const auto *box = desk.find<QCheckBox>(name);
            const bool locked = desk.access.isLocked(*findSetting(QString::fromLatin1(name)));
            QCOMPARE(box->isEnabled(), !locked);
            QCOMPARE(box->isChecked(), locked);
            QCOMPARE(box->toolTip().isEmpty(), !locked);
        }
    }

    void whatCannotBeStoredIsSaid()
    {
        Desk desk;
        desk.openSettings();
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
        signedOut.signIn(u"eve@example.com"_s);
        QTRY_COMPARE(signedOut.presenter.shown.size(), 1); // the network is down
        QTRY_COMPARE(signedOut.find<QLabel>("brevokStatus")->text(),
            u"Network is unreachable. Is your internet connection down?"_s);
        QCOMPARE(signedOut.find<QLineEdit>("orlecId")->text(), u"eve@example.com"_s);
        signedOut.click("createAccountLink");
        QCOMPARE(
            signedOut.opener.opened, QList<QUrl>{QUrl(u"https://service.example/base/account/register"_s)});

        Desk signedIn(u"held-id"_s);
        signedIn.open();
        QCOMPARE(signedIn.find<QPushButton>("actionButton")->text(), u"Sign Out"_s);
        QCOMPARE(signedIn.find<QLabel>("signedInAs")->text(), u"Signed in as ada@example.com."_s);
        QVERIFY(!signedIn.find<QWidget>("credentials")->isVisible());
        const auto *page = signedIn.find<QStackedWidget>("tabView")->currentWidget();
        QVERIFY(signedIn.find<QLabel>("signedInAs")->mapTo(page, QPoint()).y() <= 24); // no blank band above
        signedIn.click("actionButton");
        QTRY_COMPARE(signedIn.presenter.shown.size(), 1);
    }
};

QTEST_MAIN(PreferencesTest)
#include "test_preferences.moc"
