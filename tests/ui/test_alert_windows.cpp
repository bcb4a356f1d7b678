// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/UntrustedText.h"
#include "SmallRig.h"
#include "support/InRow.h"
#include "ui/alerts/AlertDialog.h"
#include "ui/alerts/WidgetAlertPresenter.h"
#include "ui/windows/ApplicationFacts.h"
#include "ui/windows/WebAddressWindow.h"
#include "WindowTest.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QElapsedTimer>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QTest>
#include <QTimer>
#include <QWindow>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

using Buttons = QList<AlertButton>;

AlertContent alertWith(const Buttons &buttons)
{
    AlertContent content;
    content.messageText = u"<b>Message</b>"_s;
    content.informativeText = u"More"_s;
    content.buttons = buttons;
    return content;
}

/// Does @p act with the alert as soon as it is up.
void onceShown(const std::function<void(AlertDialog &)> &act)
{
    QTimer::singleShot(0, qApp, [act] {
        auto *dialog = qobject_cast<AlertDialog *>(QApplication::activeModalWidget());
        if (dialog != nullptr) {
            act(*dialog);
        } else {
            onceShown(act);
        }
    });
}

QPushButton *button(const AlertDialog &dialog, const QString &title)
{
    const QList<QPushButton *> buttons = dialog.findChildren<QPushButton *>();
    for (QPushButton *candidate : buttons) {
        if (candidate->accessibleName() == title) {
            return candidate;
        }
    }
    return nullptr;
}

} // namespace

class AlertWindowsTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setQuitOnLastWindowClosed(false); }

    void keysPressButtons()
    {
        const auto answerTo = [](const Buttons &buttons, Qt::Key key, bool focusLast = false) {
            onceShown([key, focusLast, &buttons](AlertDialog &dialog) {
                // Wherever the focus is, Return means the same.
                if (focusLast && !buttons.isEmpty()) {
                    button(dialog, buttons.last().title)->setFocus();
                }
                QTest::keyClick(dialog.focusWidget() != nullptr ? dialog.focusWidget() : &dialog, key);
                if (dialog.isVisible()) {
                    dialog.close();
                }
            });
            WidgetAlertPresenter presenter;
            return presenter.runModal(alertWith(buttons));
        };
        // What Return and Escape answer, -1000 where they do nothing, and whether the frame has a button.
        const QList<std::tuple<const char *, Buttons, int, int, bool>> rows{
            {"none given", {}, 1000, 1000, true},
            {"one", {{u"OK"_s}}, 1000, 1000, true},
            {"Cancel", {{u"OK"_s}, {u"Cancel"_s}}, 1000, 1001, true},
            {"no Cancel", {{u"Continue"_s}, {u"Quit InDesign"_s}}, 1000, -1000, false},
            {"reversed", {{u"Quit"_s, true, AlertKey::Escape}, {u"Cancel"_s, true, AlertKey::Return}}, 1001,
                1000, true},
            {"third", {{u"A"_s}, {u"B"_s}, {u"Cancel"_s}}, 1000, 1002, true},
            {"disabled", {{u"Finish Actions"_s, false}, {u"Cancel"_s}}, -1000, 1001, true},
            {"Return on the second", {{u"Quit"_s}, {u"Cancel"_s, true, AlertKey::Return}}, 1001, -1000, true},
            {"Return and Escape cancel", {{u"Remove"_s}, {u"Cancel"_s, true, AlertKey::ReturnAndEscape}},
                1001, 1001, true},
        };
        for (const auto &[name, buttons, onReturn, onEscape, closable] : rows) {
            const InRow in(name);
            QCOMPARE(answerTo(buttons, Qt::Key_Return), onReturn);
            QCOMPARE(answerTo(buttons, Qt::Key_Enter, true), onReturn);
            QCOMPARE(answerTo(buttons, Qt::Key_Escape), onEscape);
            const auto frame = AlertDialog(alertWith(buttons)).windowFlags();
            QCOMPARE(frame.testFlag(Qt::WindowCloseButtonHint), closable);
        }
    }

    void contentIsShownAsItIs()
    {
        WidgetAlertPresenter presenter;
        QCheckBox box(u"Do not ask again"_s);
        AlertContent content = alertWith({{u"R&D"_s}, {u"Cancel"_s}});
        content.informativeText = QString(3000, u'W') + u"\n<img src=x>"_s;
        content.accessory = QVariant::fromValue<QWidget *>(&box);
        onceShown([&box](AlertDialog &dialog) {
            auto *message = dialog.findChild<QLabel *>(u"messageText"_s);
            QCOMPARE(message->text(), u"<b>Message</b>"_s);
            QCOMPARE(message->textFormat(), Qt::PlainText);
            QCOMPARE(dialog.findChild<QLabel *>(u"informativeText"_s)->textFormat(), Qt::PlainText);
            QVERIFY(dialog.width() < 900 && dialog.height() < 900);
            const QPushButton *first = button(dialog, u"R&D"_s);
            QVERIFY(first->geometry().left() > button(dialog, u"Cancel"_s)->geometry().left());
            QVERIFY(box.isVisible() && dialog.isAncestorOf(&box));
            QTest::keyClick(&box, Qt::Key_Space);
            QTest::mouseClick(button(dialog, u"Cancel"_s), Qt::LeftButton);
        });
        QCOMPARE(presenter.runModal(content), alertSecondButton);
        QVERIFY(box.isChecked() && box.parent() == nullptr && !box.isVisible()); // it comes back
    }

    // A long address is broken to fit, and comes whole to whoever copies or hears it.
    void copiesAreWhole()
    {
        const QString address = u"https://service.example/"_s + QString(100, u'a');
        AlertDialog dialog(
            {.messageText = address, .informativeText = {}, .icon = {}, .buttons = {}, .accessory = {}});
        dialog.show();
        auto *label = dialog.findChild<QLabel *>(u"messageText"_s);
        QVERIFY(label->width() < 700);
        QCOMPARE(QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name), address);
        label->setSelection(0, static_cast<int>(label->text().size()));
        label->setFocus();
        QTest::keyClick(label, Qt::Key_C, Qt::ControlModifier);
        QTRY_COMPARE(QGuiApplication::clipboard()->text(), address);
    }

    void focusComesBack()
    {
        WidgetAlertPresenter presenter;
        QWidget window;
        window.show();
        QDialog sheet(&window);
        const QPushButton first(&sheet);
        QPushButton second(&sheet);
        sheet.open();
        QVERIFY(QTest::qWaitForWindowActive(&sheet));
        second.setFocus();
        for (int i = 0; i < 4; ++i) {
            if (i % 2 == 0) {
                presenter.beginSheet(alertWith({{u"OK"_s}}), &window, {});
            } else {
                presenter.beginModal(alertWith({{u"OK"_s}}), {});
            }
            auto *alert = qobject_cast<AlertDialog *>(QApplication::activeModalWidget());
            QVERIFY(alert != nullptr && QTest::qWaitForWindowActive(alert));
            QCOMPARE(alert->windowHandle()->transientParent(), sheet.windowHandle());
            QTest::keyClick(alert, Qt::Key_Escape);
            QTRY_COMPARE(QApplication::focusWidget(), &second);
        }
    }

    void focusThatNeverArrivedIsForgotten()
    {
        WidgetAlertPresenter presenter;
        QWidget window;
        QWidget other;
        const auto liesOver = [&presenter]() -> const QWindow * {
            presenter.beginModal(alertWith({{u"OK"_s}}), {});
            auto *alert = qobject_cast<AlertDialog *>(QApplication::activeModalWidget());
            const QWindow *below = alert != nullptr ? alert->windowHandle()->transientParent() : nullptr;
            return alert != nullptr && alert->close() ? below : nullptr;
        };
        focus(window);
        {
            const QSignalBlocker unheard(qGuiApp); // as where the window manager gives it to another
            QCOMPARE(liesOver(), window.windowHandle());
            QElapsedTimer since;
            since.start();
            focus(other);
            QTRY_VERIFY(since.hasExpired(1000));
        }
        QCOMPARE(liesOver(), other.windowHandle());
    }

    void endOfTheProgramAnswers()
    {
        WidgetAlertPresenter presenter;
        QEventLoop loop;
        int answer = 0;
        QTimer::singleShot(0, &loop, [&] {
            answer = presenter.runModal(alertWith({{u"Continue"_s}, {u"Quit InDesign"_s}}));
            loop.quit();
        });
        // No alert may refuse what closes all windows of a program that ends.
        onceShown([](AlertDialog &) { QApplication::closeAllWindows(); });
        loop.exec();
        QCOMPARE(answer, alertStopped);
    }

    void sheetsBelongToTheirWindow()
    {
        WidgetAlertPresenter presenter;
        auto window = std::make_unique<QWidget>();
        window->show();
        QList<int> answers;
        const auto begin = [&] {
            presenter.beginSheet(
                alertWith({{u"OK"_s}}), window.get(), [&answers](int answer) { answers.append(answer); });
            return QPointer(window->findChild<AlertDialog *>());
        };
        QPointer<AlertDialog> sheet = begin();
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        QTest::keyClick(sheet, Qt::Key_Return);
        QCOMPARE(answers, QList<int>{alertFirstButton});
        QTRY_VERIFY(!sheet);
        sheet = begin();
        presenter.windowEndSheet(window.get());
        QCOMPARE(answers, (QList<int>{alertFirstButton, alertStopped}));
        QTRY_VERIFY(!sheet);
        presenter.windowEndSheet(window.get()); // there is none
        sheet = begin();
        window.reset();
        QVERIFY(!sheet);
        QCOMPARE(answers.size(), 2);
    }

    void factsComeFromTheBundle()
    {
        const SmallRig rig;
        const auto told = [&rig](const QMap<QString, QString> &information) {
            const MainBundle bundle = rig.bundleSaying(information);
            const ApplicationFacts facts = applicationFacts(bundle);
            return facts.appName + u'|' + facts.versionLine() + u'|'
                + QString::number(applicationIcon(bundle).pixmap(32).isNull());
        };
        QCOMPARE(told({{u"CFBundleDisplayName"_s, u"D %1"_s}, {u"CFBundleName"_s, u"N"_s},
                     {u"CFBundleVersion"_s, u"%1"_s}, {u"CFBundleShortVersionString"_s, u"2.0"_s}}),
            u"D %1|Version 2.0 (%1, 15)|0"_s);
        QCOMPARE(
            told({{u"CFBundleName"_s, u"N"_s}, {u"CFBundleVersion"_s, u"7"_s}}), u"N|Version 7 (7, 15)|0"_s);
        QCOMPARE(told({}), u"My Program.v2|Version  (, 15)|0"_s);
    }

    void aboutIsMadeAfreshOnceClosed()
    {
        SmallRig rig;
        for (const QString &version : {u"7"_s, u"8"_s}) {
            rig.bundle = rig.bundleSaying({{u"CFBundleName"_s, u"<i>N</i>"_s},
                {u"CFBundleVersion"_s, version}, {u"NSHumanReadableCopyright"_s, u"© all"_s}});
            const QPointer<BrevokAboutController> about = &rig.windows.aboutController();
            QCOMPARE(&rig.windows.aboutController(), about.data());
            const auto text = [&about](const char *name) {
                const auto *label = about->findChild<QLabel *>(QLatin1StringView(name));
                return label->textFormat() == Qt::PlainText ? label->text() : u"not plain"_s;
            };
            about->showWindow();
            QCOMPARE(text("name"), u"<i>N</i>"_s);
            QCOMPARE(text("version"), u"Version %1 (%1, 15)"_s.arg(version));
            QCOMPARE(text("copyright"), u"© all"_s);
            QTest::keyClick(about, Qt::Key_Escape);
            QTRY_VERIFY(!about);
        }
    }

    void updateWindowsShowAndClose()
    {
        SmallRig rig;
        BrevokUpdateProgressController &progress = rig.windows.updateProgressController();
        progress.showWindow();
        QTest::mouseClick(progress.findChild<QPushButton *>(), Qt::LeftButton);
        QVERIFY(!progress.isVisible());
        QCOMPARE(&rig.windows.updateProgressController(), &progress);

        BrevokUpdateResultController &result = rig.windows.updateResultController();
        for (const QString &title : {u"One"_s, u"Two"_s}) {
            result.setTitleString(title);
            result.setLabelString(u"<b>label</b>"_s);
            result.showWindow();
            QCOMPARE(result.findChild<QLabel *>(u"title"_s)->text(), title);
            QCOMPARE(result.findChild<QLabel *>(u"label"_s)->text(), u"<b>label</b>"_s);
            QTest::keyClick(&result, Qt::Key_Return);
            QVERIFY(!result.isVisible());
        }
    }

    // Where no browser comes up; over the window with the link, which gets the focus back.
    void addressesCanBeCopied()
    {
        SmallRig rig;
        auto &shown = rig.windows.window<WebAddressWindow>();
        QWidget asking;
        focus(asking);
        const QString address = u"https://example.com/"_s + QString(500, u'a');
        shown.showAddress(QUrl(address), &asking);
        QVERIFY(QTest::qWaitForWindowActive(&shown));
        const auto *text = shown.findChild<QPlainTextEdit *>(u"address"_s);
        QCOMPARE(text->textCursor().selectedText(), address); // without places to break
        shown.findChild<QPushButton *>(u"copy"_s)->click();
        QCOMPARE(QGuiApplication::clipboard()->text(), address);
        shown.showAddress(QUrl(u"javascript:x(\u202E)\n<b>"_s), &asking);
        QCOMPARE(text->toPlainText(), u"javascript:x(%E2%80%AE)%0A%3Cb%3E"_s);
        shown.showAddress(QUrl(u"http://[bad\u202E"_s), &asking);
        QVERIFY(text->toPlainText().contains(u"[bad"_s) && isHarmless(text->toPlainText()));
        QTest::keyClick(&shown, Qt::Key_Escape);
        QVERIFY(QTest::qWaitForWindowActive(&asking));
        shown.showAddress(QUrl(address), &asking); // over the same again
        QCOMPARE(shown.windowHandle()->transientParent(), asking.windowHandle());
        shown.close();
        shown.showAddress(QUrl(address), nullptr); // the window with the link has gone
        QVERIFY(shown.isVisible());
    }

    // A check that ends by itself, while the user is elsewhere.
    void smallWindowsTakeNoFocus()
    {
        SmallRig rig;
        QWidget asking;
        QWidget elsewhere;
        asking.show();
        BrevokUpdateProgressController &progress = rig.windows.updateProgressController();
        progress.showOver(&asking);
        QVERIFY(QTest::qWaitForWindowActive(&progress));
        focus(elsewhere);
        progress.close();
        QCoreApplication::processEvents();
        QVERIFY(elsewhere.isActiveWindow());
    }
};

QTEST_MAIN(AlertWindowsTest)
#include "test_alert_windows.moc"
