// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "alerts/BrevokAlertQueue.h"
#include "service/BrevokSession.h"
#include "service/Connectivity.h"
#include "service/NetworkFactory.h"
#include "support/FakePlatform.h"
#include "support/FakeRouteLookup.h"
#include "support/IdleUpdater.h"
#include "support/MemorySettingsStore.h"
#include "support/RecordingOpener.h"
#include "support/SampleBundles.h"
#include "support/ScratchStateStore.h"
#include "support/ScriptedAlertPresenter.h"
#include "support/servers/FaultServer.h"
#include "support/StoredSettings.h"
#include "targets/BrevokTargetApps.h"
#include "ui/BrevokPreferencesController.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QStackedWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Page = BrevokPreferencesController::Page;

namespace {

/// The window over the real session and list of targets. Without a service the network is down, so nothing is
/// sent.
struct Desk {
    explicit Desk(const QString &sessionId = {}, const ServiceConfiguration &service = {})
        : network(service)
    {
        routes.flags = service.baseUrl.isEmpty() ? ReachabilityFlags() : Reachable;
        if (!sessionId.isEmpty()) {
            scratch.store.commit({{u"OrlecSessionData"_s, QString(),
                Record{{u"SessionId"_s, sessionId}, {u"orlecId"_s, u"ada@example.com"_s}}}});
        }
        session.emplace(scratch.store, network, connectivity, queue, updater);
        targets.emplace(scratch.store, search);
    }
    void open()
    {
        window.emplace(BrevokPreferencesController::Collaborators{*session, *targets, access, settings,
            presenter, opener, QUrl(u"https://service.example/base"_s)});
        window->showWindow();
    }
    void openTargets()
    {
        open();
        window->showTargets();
    }
    void openSheet()
    {
        openTargets();
        click("insertButton");
    }
    void signIn(const QString &email) const
    {
        QTest::keyClicks(find<QLineEdit>("orlecId"), email);
        QTest::keyClicks(find<QLineEdit>("password"), u"secret"_s);
        QTest::keyClick(find<QLineEdit>("password"), Qt::Key_Return);
    }
    template <class Widget> [[nodiscard]] Widget *find(const char *name) const
    {
        return window->findChild<Widget *>(QString::fromLatin1(name));
    }
    [[nodiscard]] QTableView *table() const { return find<QTableView>("targetsView"); }
    [[nodiscard]] QStringList rows() const
    {
        QStringList texts;
        for (int row = 0; row < table()->model()->rowCount(); ++row) {
            texts.append(table()->model()->index(row, 1).data().toString());
        }
        return texts;
    }
    void click(const char *button) const { QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton); }
    /// Chooses a folder in the sheet as a user does.
    void choose(const QString &path) const
    {
        click("choosePath");
        QFileDialog *chooser = nullptr;
        const QList<QFileDialog *> dialogs = window->findChildren<QFileDialog *>();
        for (QFileDialog *dialog : dialogs) {
            chooser = dialog->isVisible() ? dialog : chooser;
        }
        QVERIFY(chooser != nullptr);
        QCOMPARE(chooser->windowTitle(), u"Chose Plug-Ins directory"_s);
        chooser->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path);
        QTest::keyClick(chooser->findChild<QLineEdit *>(u"fileNameEdit"_s), Qt::Key_Return);
        QTRY_VERIFY(!chooser->isVisible());
    }

    QTemporaryDir folder;
    MemorySettingsStore settings;
    ScratchStateStore scratch;
    FakeRouteLookup routes;
    ScriptedAlertPresenter presenter;
    RecordingPanel panel;
    NetworkFactory network;
    Connectivity connectivity{network, routes};
    BrevokAlertQueue queue{presenter, panel};
    IdleUpdater updater;
    FakeApplicationSearch search;
    StoredSettings access{settings};
    RecordingOpener opener;
    std::optional<BrevokSession> session;
    std::optional<BrevokTargetApps> targets;
    std::optional<BrevokPreferencesController> window;
};

} // namespace

class PreferencesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // All but what the windowless platform says of itself.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
    }
    void initTestCase() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    void pagesAreSwitched();
    void tableFollowsTheTargets();
    void tableIsUsedByKeyboard();
    void validFolderIsAdded();
    void otherFolderIsAskedFor_data();
    void otherFolderIsAskedFor();
    void wrongFolderIsRefused();
    void oneFolderIsAddedOnce();
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

void PreferencesTest::tableFollowsTheTargets()
{
    Desk desk;
    desk.targets->insertTarget(u"/A/Plug-Ins"_s, u"Adobe InDesign"_s, u"140"_s);
    desk.targets->insertTarget(u"/B/Plug-Ins"_s, u"Adobe InDesign"_s, u"150"_s);
    desk.openTargets();
    const QString first = u"/B/Plug-Ins [Adobe InDesign CC 2020]"_s;
    const QString second = u"/A/Plug-Ins [Adobe InDesign CC 2019]"_s;
    QCOMPARE(desk.rows(), (QStringList{first, second}));

    // Sorted once: what comes later stands behind, though its version is higher.
    const QString path = u"/<b>"_s + QString(300, u'W') + u"\n/Plug-Ins"_s;
    desk.targets->insertTarget(path, u"InCopy"_s, u"190"_s);
    QCOMPARE(desk.rows().size(), 3);
    const QString label = desk.rows().last();
    QVERIFY(label.startsWith(u"/<b>W"_s) && !label.contains(u'\n'));
    QVERIFY(desk.table()->columnWidth(1) >= desk.table()->fontMetrics().horizontalAdvance(label));
    QVERIFY(desk.table()->model()->index(2, 1).data(Qt::ToolTipRole).toString().contains(u"&lt;b&gt;"_s));

    const auto state = [&desk](int row) {
        return desk.table()->model()->index(row, 0).data(Qt::CheckStateRole).value<Qt::CheckState>();
    };
    desk.targets->setTarget(u"/A/Plug-Ins"_s, false);
    QCOMPARE(state(1), Qt::Unchecked);
    desk.targets->removeTarget(u"/B/Plug-Ins"_s);
    QCOMPARE(desk.rows(), (QStringList{second, label}));
    QVERIFY(!desk.find<QLabel>("noTargets")->isVisible());
    desk.targets->removeTarget(u"/A/Plug-Ins"_s);
    desk.targets->removeTarget(path);
    QVERIFY(desk.find<QLabel>("noTargets")->isVisible());
}

void PreferencesTest::tableIsUsedByKeyboard()
{
    Desk desk;
    desk.targets->insertTarget(u"/A"_s, u"InDesign"_s, u"140"_s);
    desk.targets->insertTarget(u"/B"_s, u"InDesign"_s, u"140"_s);
    desk.targets->insertTarget(u"/C"_s, u"InDesign"_s, u"140"_s);
    desk.openTargets();
    auto *remove = desk.find<QPushButton>("removeButton");
    QVERIFY(!remove->isEnabled());
    desk.table()->setFocus();
    desk.table()->selectRow(0);
    QVERIFY(remove->isEnabled());
    QTest::keyClick(desk.table(), Qt::Key_Space);
    QVERIFY(!desk.targets->targetState(u"/C"_s));
    QTest::keyClick(desk.table(), Qt::Key_Space);
    QVERIFY(desk.targets->targetState(u"/C"_s));
    const QRect box = desk.table()->visualRect(desk.table()->model()->index(1, 0));
    QTest::mouseClick(
        desk.table()->viewport(), Qt::LeftButton, {}, QPoint(box.left() + 10, box.center().y()));
    QVERIFY(!desk.targets->targetState(u"/B"_s));

    desk.table()->selectAll();
    QTest::mouseClick(remove, Qt::LeftButton);
    QVERIFY(desk.targets->targets().isEmpty());
    QVERIFY(!remove->isEnabled());
}

void PreferencesTest::validFolderIsAdded()
{
    Desk desk;
    const QString path =
        QDir::cleanPath(writeHostApplication(desk.folder.path(), u"Adobe InDesign CS5.5"_s, u"7536"_s));
    desk.openSheet();
    auto *sheet = desk.find<QDialog>("targetDataSheet");
    QVERIFY(sheet->isVisible());
    QVERIFY(!desk.find<QPushButton>("addTarget")->isEnabled());
    desk.choose(path);
    QCOMPARE(desk.find<QComboBox>("targetPath")->currentText(), path);
    desk.find<QComboBox>("targetApp")->setCurrentIndex(1);
    desk.find<QComboBox>("targetVer")->setCurrentIndex(3);
    desk.click("addTarget");
    QTRY_VERIFY(!sheet->isVisible());
    const Record record = desk.targets->targets().value(path);
    QCOMPARE(record.value(TargetKeys::type).toString(), u"InCopy"_s);
    QCOMPARE(record.value(TargetKeys::version).toString(), u"75"_s);
    QVERIFY(desk.presenter.sheets.isEmpty());

    // Each sheet starts afresh, and Escape adds nothing.
    desk.click("insertButton");
    QVERIFY(!desk.find<QPushButton>("addTarget")->isEnabled());
    QTest::keyClick(sheet, Qt::Key_Escape);
    QVERIFY(!sheet->isVisible());
    QCOMPARE(desk.rows().size(), 1);
}

void PreferencesTest::otherFolderIsAskedFor_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("response");
    QTest::addColumn<bool>("added");
    QTest::newRow("wrong name, OK") << u"plug-ins"_s << 1000 << true;
    QTest::newRow("default button of its own") << u"plug-ins"_s << 1 << true;
    QTest::newRow("nothing beside, OK") << u"Plug-Ins"_s << 1000 << true;
    QTest::newRow("Cancel") << u"Plug-Ins"_s << 1001 << false;
    QTest::newRow("an older system's answer") << u"Plug-Ins"_s << -1002 << false;
}

void PreferencesTest::otherFolderIsAskedFor()
{
    QFETCH(QString, name);
    QFETCH(int, response);
    Desk desk;
    const QString path = desk.folder.filePath(name);
    QVERIFY(QDir().mkpath(path));
    desk.openSheet();
    desk.choose(path);
    desk.click("addTarget");
    QTRY_COMPARE(desk.presenter.sheets.size(), 1);
    const AlertContent &alert = desk.presenter.sheets.first();
    QCOMPARE(alert.style, AlertStyle::Critical);
    QCOMPARE(alert.messageText.value_or(QString()), u"Invalid Plug-Ins path selected!"_s);
    QCOMPARE(alert.buttons.value(1).title, u"Cancel"_s);
    QVERIFY(desk.targets->targets().isEmpty());
    desk.presenter.completions.takeFirst()(response);
    QFETCH(bool, added);
    QCOMPARE(desk.targets->targets().contains(path), added);
    QCOMPARE(desk.find<QDialog>("targetDataSheet")->isVisible(), !added);
}

void PreferencesTest::wrongFolderIsRefused()
{
    Desk desk;
    const QString path = desk.folder.filePath(u"gone/Plug-Ins"_s);
    QVERIFY(QDir().mkpath(path));
    desk.openSheet();
    desk.choose(path);
    QVERIFY(QDir(path).removeRecursively());
    desk.click("addTarget");
    QTRY_COMPARE(desk.presenter.sheets.size(), 1);
    desk.presenter.completions.takeFirst()(alertFirstButton);
    QVERIFY(desk.targets->allRecords().isEmpty());
    QVERIFY(desk.find<QDialog>("targetDataSheet")->isVisible());
    QString told = desk.find<QLabel>("sheetStatus")->text();
    told.remove(QChar(0x200b)); // where a long path may be broken
    QCOMPARE(told, u"There is no folder '%1'."_s.arg(path));
    // Another choice is judged anew.
    desk.choose(desk.folder.path());
    QVERIFY(desk.find<QLabel>("sheetStatus")->text().isEmpty());
}

void PreferencesTest::oneFolderIsAddedOnce()
{
    Desk desk;
    const QString path = writeHostApplication(desk.folder.path(), u"Adobe InDesign CS5.5"_s, u"7536"_s);
    QVERIFY(QFile::link(path, desk.folder.filePath(u"Plug-Ins"_s)));
    desk.targets->insertTarget(path, u"Adobe InDesign"_s, u"75"_s);
    desk.openSheet();
    desk.choose(desk.folder.filePath(u"Plug-Ins"_s));
    desk.click("addTarget");
    QTRY_VERIFY(!desk.find<QDialog>("targetDataSheet")->isVisible());
    QCOMPARE(desk.targets->allRecords().keys(), QStringList{path});
    QCOMPARE(desk.targets->targets().value(path).value(TargetKeys::version).toString(), u"190"_s);
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
