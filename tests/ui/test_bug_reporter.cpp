// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "../reporting/ReportRig.h"
#include "support/InRow.h"
#include "ui/widgets/Spinner.h"
#include "ui/windows/BrevokBugReporterController.h"
#include "ui/windows/ReportBodyView.h"
#include "WindowTest.h"

#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

/// The window over a real reporter and a service of the test's.
struct Desk {
    Desk()
        : window({rig.reporter, rig.alerts, [this] {
                      return account;
                  }})
    {
        window.showWindow();
    }
    ReportRig rig;
    QString account;
    BrevokBugReporterController window;

    template <class Widget> [[nodiscard]] Widget *find(const char *name) const
    {
        return window.findChild<Widget *>(QString::fromLatin1(name));
    }
    [[nodiscard]] QLineEdit *email() const { return find<QLineEdit>("email"); }
    [[nodiscard]] QPlainTextEdit *note() const { return find<QPlainTextEdit>("note"); }
    [[nodiscard]] QString progress() const { return find<QLabel>("progressText")->text(); }
    /// Whether each part of the form is @p enabled.
    [[nodiscard]] bool formIs(bool enabled) const
    {
        const std::array<QWidget *, 4> parts{
            email(), note(), find<QWidget>("send"), find<QWidget>("showBody")};
        return std::ranges::all_of(
            parts, [enabled](const QWidget *one) { return one->isEnabled() == enabled; });
    }
    void type(const QString &address, const QString &text) const
    {
        email()->setText(address);
        note()->setPlainText(text);
    }
    void click(const char *button) const { QTest::mouseClick(find<QPushButton>(button), Qt::LeftButton); }
    /// Sends a report; what the user is told then.
    [[nodiscard]] AlertContent send() const
    {
        type(u"ada@example.com"_s, u"It broke"_s);
        click("send");
        const bool waits = formIs(false);
        const QList<AlertContent> &sheets = rig.presenter.sheets;
        return waits && QTest::qWaitFor([&sheets] { return sheets.size() == 1; }, 30000) ? sheets.first()
                                                                                         : AlertContent();
    }
};

} // namespace

class BugReporterWindowTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void faultsAreShownAtOnce()
    {
        Desk desk;
        QCOMPARE(BrevokBugReporterController::bugReporterController(), &desk.window);
        const auto sheet = [&desk](const QString &address, const QString &note) {
            desk.type(address, note);
            desk.find<QWidget>("send")->setFocus();
            desk.click("send");
            return desk.rig.presenter.sheets.isEmpty()
                ? QString()
                : desk.rig.presenter.sheets.takeLast().messageText.value();
        };
        QCOMPARE(sheet({}, {}), u"Missing email address!"_s);
        QCOMPARE(desk.window.focusWidget(), desk.email());
        QCOMPARE(sheet(u"ada@example"_s, u"x"_s), u"Invalid email address!"_s);
        QCOMPARE(desk.window.focusWidget(), desk.email());
        QCOMPARE(sheet(u"ada@example.com"_s, {}), u"Missing problem description!"_s);
        QCOMPARE(desk.window.focusWidget(), desk.note());
        QVERIFY(desk.formIs(true));
    }

    void formWaitsForTheAnswer()
    {
        const QString failed = u"Failed to send error report"_s;
        const QList<std::tuple<const char *, Response, QString, AlertStyle>> rows{
            {"taken", Response::ok("{}"), u"Thank you for reporting this issue."_s,
                AlertStyle::Informational},
            {"refused", Response::of(403, "{}"), failed, AlertStyle::Informational},
            {"hung up", Response::hangUp(), failed, AlertStyle::Warning},
        };
        for (const auto &[name, response, message, style] : rows) {
            const InRow in(name);
            Desk desk;
            desk.rig.server.on(ReportRig::reportPath, response);
            QCOMPARE(desk.send().messageText.value(), message);
            QCOMPARE(desk.rig.presenter.sheets.first().style, style);
            QVERIFY(desk.formIs(true));
            QVERIFY(desk.progress().isEmpty() && !desk.find<Spinner>("indicator")->isAnimating());
            // The user can send again: what has arrived is not sent twice, what has not is still there.
            QCOMPARE(desk.note()->toPlainText(), message == failed ? u"It broke"_s : QString());
            desk.rig.presenter.completions.first()(alertFirstButton);
            desk.click("send");
            QTRY_COMPARE_WITH_TIMEOUT(desk.rig.presenter.sheets.size(), 2, 30000);
        }
        Desk desk;
        desk.rig.server.stop();
        QCOMPARE(desk.send().messageText.value(), u"Connection Error"_s);
        QCOMPARE(desk.rig.panel.calls, (QList{true, false})); // held open while the sheet was attached
        QVERIFY(desk.formIs(true));
    }

    void windowStaysUsableMeanwhile()
    {
        Desk desk;
        desk.rig.server.on(ReportRig::reportPath, Response::silent());
        desk.type(u"ada@example.com"_s, u"It broke"_s);
        desk.click("send");
        QVERIFY(desk.find<Spinner>("indicator")->isAnimating());
        QCOMPARE(desk.progress(), u"Checking the connection…"_s);
        QTRY_COMPARE_WITH_TIMEOUT(desk.progress(), u"Sending the report…"_s, 30000);
        QTRY_COMPARE(desk.rig.arrived(ReportRig::reportPath).size(), 1);
        QTest::keyClick(&desk.window, Qt::Key_Escape);
        QVERIFY(!desk.window.isVisible());
        desk.window.showWindow();
        QVERIFY(desk.formIs(false));
        desk.rig.server.stop();
        QTRY_VERIFY_WITH_TIMEOUT(desk.formIs(true), 30000);
    }

    void bodyIsShown()
    {
        Desk desk;
        const QString line = u"log \"line\" with an ä"_s;
        QVERIFY(writeFile(desk.rig.logs() + u"/orlec.log"_s, (line + u'\n').repeated(20000).toUtf8()));
        desk.type({}, u"It <b>broke</b>"_s);
        desk.click("showBody");
        QVERIFY(desk.find<QPushButton>("showBody")->isEnabled()); // and so keeps the focus
        desk.click("showBody");
        QTRY_COMPARE_WITH_TIMEOUT(desk.window.findChildren<ReportBodyView *>().size(), 1, 30000);
        const auto *sections = desk.window.findChild<QTabWidget *>();
        QStringList shown;
        for (int i = 0; i < sections->count(); ++i) {
            const auto *page = qobject_cast<QPlainTextEdit *>(sections->widget(i));
            shown.append(sections->tabText(i) + u'\n' + page->toPlainText());
        }
        QCOMPARE(shown.value(0), u"What you wrote\nDescription\nIt <b>broke</b>"_s);
        QVERIFY(
            shown.value(1).startsWith(u"The application\nApplication\nVersion 1.2 (7, 15)\n\nPlatform\n"_s));
        QVERIFY(shown.value(2).startsWith(u"Logs\norlec.log\n"_s + line + u'\n'));
        // Nothing is left out.
        QByteArray body;
        desk.rig.reporter.reportBody(
            {}, u"It <b>broke</b>"_s, this, [&body](const QByteArray &made) { body = made; });
        QTRY_VERIFY(body.size() > 256000);
        const QJsonArray items = QJsonDocument::fromJson(body)["Data"_L1].toArray();
        for (const QJsonValue item : items) {
            const QString part = item["Key"_L1].toString() + u'\n' + item["Value"_L1].toString();
            QVERIFY2(shown.join(QString()).contains(part), qPrintable(part.left(50)));
        }
        QVERIFY(desk.rig.server.requests().isEmpty());
    }

    void addressIsTheAccounts()
    {
        Desk desk;
        QVERIFY(desk.email()->text().isEmpty());
        QCOMPARE(desk.window.focusWidget(), desk.email());
        const auto reopened = [&desk](const QString &account) {
            desk.window.hide();
            desk.account = account;
            desk.window.showWindow();
            return desk.email()->text();
        };
        QCOMPARE(reopened(u"ada@example.com"_s), u"ada@example.com"_s);
        QCOMPARE(desk.window.focusWidget(), desk.note());
        QCOMPARE(reopened({}), QString());
        QTest::keyClicks(desk.email(), u"eve@example.com"_s);
        QCOMPARE(reopened(u"ada@example.com"_s), u"eve@example.com"_s); // what was typed stays
    }
};

QTEST_MAIN(BugReporterWindowTest)
#include "test_bug_reporter.moc"
