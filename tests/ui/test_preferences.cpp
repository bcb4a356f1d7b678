// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "PreferencesDesk.h"
#include "support/servers/FaultServer.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QRegularExpression>
#include <QStackedWidget>

using namespace brevok;
using namespace brevok::testing;
using Page = BrevokPreferencesController::Page;

class PreferencesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // All but what the windowless platform says of itself.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
    }

    void pagesAreSwitched();
    void checkBoxesAreInStep();
    void whatTheAdministratorDecidesIsDisabled();
    void whatCannotBeStoredIsSaid();
    void accountPageFollowsTheSession();
    void whyNobodyIsSignedInIsSaid();
};

void PreferencesTest::pagesAreSwitched()
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

void PreferencesTest::whatTheAdministratorDecidesIsDisabled()
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

void PreferencesTest::checkBoxesAreInStep()
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
        desk.access.setSetting(setting, setting.valueFrom(0));
    }
    for (auto key = keys.cbegin(); key != keys.cend(); ++key) {
        QTRY_VERIFY2(!desk.find<QCheckBox>(key.key())->isChecked(), key.key());
    }
    desk.access.setSetting(*findSetting(u"logLevel"_s), 3);
    QTRY_VERIFY(desk.find<QCheckBox>("logLevel")->isChecked());
}

void PreferencesTest::whatCannotBeStoredIsSaid()
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

void PreferencesTest::accountPageFollowsTheSession()
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
    QCOMPARE(signedOut.opener.opened, QList<QUrl>{QUrl(u"https://service.example/base/account/register"_s)});

    Desk signedIn(u"held-id"_s);
    signedIn.open();
    QCOMPARE(signedIn.find<QPushButton>("actionButton")->text(), u"Sign Out"_s);
    QCOMPARE(signedIn.find<QLineEdit>("orlecId")->text(), u"ada@example.com"_s);
    QVERIFY(!signedIn.find<QLineEdit>("orlecId")->isEnabled());
    QVERIFY(!signedIn.find<QLineEdit>("password")->isVisible());
    signedIn.click("actionButton");
    QTRY_COMPARE(signedIn.presenter.shown.size(), 1);
}

void PreferencesTest::whyNobodyIsSignedInIsSaid()
{
    FaultServer server;
    const QString signin = u"/api/machine/signin"_s;
    server.on(signin, Response::of(401, "<html>"));
    Desk desk({},
        {.baseUrl = server.url(),
            .extraAuthorities = TestCertificates::shared().authorities(),
            .reachabilityHost = u"public.example"_s});
    desk.open();
    const auto *said = desk.find<QLabel>("brevokStatus");
    desk.signIn(u"eve@example.com"_s);
    QTRY_COMPARE(said->text(), u"Wrong user name or password."_s);
    QVERIFY(desk.presenter.shown.isEmpty());
    // Until the next attempt.
    server.on(signin, Response::silent());
    desk.signIn({});
    QTRY_COMPARE(said->text(), u"Contacting the service…"_s);
}

QTEST_MAIN(PreferencesTest)
#include "test_preferences.moc"
