// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "alerts/BrevokAlertQueue.h"
#include "foundation/UntrustedText.h"
#include "platform/PropertyLists.h"
#include "support/InRow.h"
#include "support/SampleBundles.h"
#include "support/ScriptedAlertPresenter.h"
#include "ui/alerts/AlertDialog.h"
#include "ui/alerts/WidgetAlertPresenter.h"
#include "ui/windows/ApplicationFacts.h"
#include "ui/windows/SmallWindows.h"
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
#include <QTemporaryDir>
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

Buttons quitQuestion()
{
    return {{u"Quit"_s, true, AlertKey::Escape}, {u"Cancel"_s, true, AlertKey::Return}};
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
        // -1000 where the key does nothing
        const QList<std::tuple<const char *, Buttons, int, int>> rows{
            {"none given", {}, 1000, 1000},
            {"one", {{u"OK"_s}}, 1000, 1000},
            {"Cancel", {{u"OK"_s}, {u"Cancel"_s}}, 1000, 1001},
            {"no Cancel", {{u"Continue"_s}, {u"Quit InDesign"_s}}, 1000, -1000},
            {"reversed", quitQuestion(), 1001, 1000},
            {"third", {{u"A"_s}, {u"B"_s}, {u"Cancel"_s}}, 1000, 1002},
            {"disabled", {{u"Finish Actions"_s, false}, {u"Cancel"_s}}, -1000, 1001},
            {"Return on the second", {{u"Quit"_s}, {u"Cancel"_s, true, AlertKey::Return}}, 1001, -1000},
            {"Return and Escape cancel", {{u"Remove"_s}, {u"Cancel"_s, true, AlertKey::ReturnAndEscape}},
                1001, 1001},
        };
        for (const auto &[name, buttons, onReturn, onEscape] : rows) {
            const InRow in(name);
            QCOMPARE(answerTo(buttons, Qt::Key_Return), onReturn);
            QCOMPARE(answerTo(buttons, Qt::Key_Return, true), onReturn);
            QCOMPARE(answerTo(buttons, Qt::Key_Enter), onReturn);
            QCOMPARE(answerTo(buttons, Qt::Key_Escape), onEscape);
        }
    }

    void framesHaveWhatMeansSomething()
    {
        const auto frame = [](const Buttons &buttons) {
            return AlertDialog(alertWith(buttons)).windowFlags()
                & (Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
        };
        QCOMPARE(frame({{u"OK"_s}}), Qt::WindowCloseButtonHint);
        QCOMPARE(frame({{u"Continue"_s}, {u"Quit InDesign"_s}}), Qt::WindowFlags());
        QCOMPARE(frame(quitQuestion()), Qt::WindowCloseButtonHint);
        QCOMPARE(alertKeys(quitQuestion()).onClose, 1); // whatever Escape means
    }

    void contentIsShownAsItIs()
    {
        WidgetAlertPresenter presenter;
        AlertContent content = alertWith({{u"R&D"_s}, {u"Cancel"_s}});
        content.informativeText = QString(3000, u'W') + u"\n<img src=x>"_s;
        onceShown([](AlertDialog &dialog) {
            auto *message = dialog.findChild<QLabel *>(u"messageText"_s);
            QCOMPARE(message->text(), u"<b>Message</b>"_s);
            QCOMPARE(message->textFormat(), Qt::PlainText);
            QCOMPARE(dialog.findChild<QLabel *>(u"informativeText"_s)->textFormat(), Qt::PlainText);
            QVERIFY(dialog.width() < 900 && dialog.height() < 900);
            QCOMPARE(dialog.windowModality(), Qt::ApplicationModal);
            QPushButton *first = button(dialog, u"R&D"_s);
            QVERIFY(first->isDefault()
                && first->geometry().left() > button(dialog, u"Cancel"_s)->geometry().left());
            QTest::mouseClick(button(dialog, u"Cancel"_s), Qt::LeftButton);
        });
        QCOMPARE(presenter.runModal(content), alertSecondButton);
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

    void longMessagesAreCut()
    {
        WidgetAlertPresenter presenter;
        RecordingPanel panel;
        BrevokAlertQueue queue(presenter, panel);
        queue.tell(u"Failed"_s, u"<b>"_s + QString(1'000'000, QChar(0x05D0)), {u"OK"_s}); // right to left
        auto *dialog = qobject_cast<AlertDialog *>(QApplication::activeModalWidget());
        QVERIFY(dialog != nullptr);
        const QString told = dialog->findChild<QLabel *>(u"informativeText"_s)->accessibleName();
        QVERIFY(told.startsWith(u"<b>א"_s) && told.endsWith(u'…') && told.size() < 5000);
        QVERIFY(dialog->height() <= dialog->screen()->availableGeometry().height());
        QTest::keyClick(dialog, Qt::Key_Return);
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }

    void focusComesBack()
    {
        WidgetAlertPresenter presenter;
        QWidget window;
        window.show();
        QDialog sheet(&window);
        auto *first = new QPushButton(&sheet);
        auto *second = new QPushButton(&sheet);
        second->move(0, 50);
        sheet.open();
        QVERIFY(QTest::qWaitForWindowActive(&sheet));
        second->setFocus();
        const auto endedBy = [&](const std::function<void()> &begin) {
            begin();
            auto *alert = qobject_cast<AlertDialog *>(QApplication::activeModalWidget());
            QVERIFY(alert != nullptr && QTest::qWaitForWindowActive(alert));
            QCOMPARE(alert->windowHandle()->transientParent(), sheet.windowHandle());
            QTest::keyClick(alert, Qt::Key_Escape);
            QTRY_COMPARE(QApplication::focusWidget(), second);
        };
        for (int i = 0; i < 3; ++i) {
            endedBy([&] { presenter.beginSheet(alertWith({{u"OK"_s}}), &window, {}); });
            endedBy([&] { presenter.beginModal(alertWith({{u"OK"_s}}), {}); });
        }
        QVERIFY(!first->hasFocus());
    }

    void focusThatNeverArrivedIsForgotten()
    {
        for (const bool windowGoes : {true, false}) {
            WidgetAlertPresenter presenter;
            QWidget window;
            QWidget other;
            focus(window);
            const auto liesOver = [&presenter]() -> const QWindow * {
                presenter.beginModal(alertWith({{u"OK"_s}}), {});
                auto *alert = qobject_cast<AlertDialog *>(QApplication::activeModalWidget());
                if (alert == nullptr) {
                    return nullptr;
                }
                const QWindow *below = alert->windowHandle()->transientParent();
                alert->close();
                return below;
            };
            {
                const QSignalBlocker unheard(qGuiApp); // as where the window manager gives it to another
                QCOMPARE(liesOver(), window.windowHandle());
                QElapsedTimer since;
                since.start();
                window.setVisible(!windowGoes);
                focus(other);
                QTRY_VERIFY(windowGoes || since.hasExpired(1000));
            }
            QCOMPARE(liesOver(), other.windowHandle());
        }
    }

    void accessoryComesBack()
    {
        WidgetAlertPresenter presenter;
        QCheckBox box(u"Do not ask again"_s);
        AlertContent content = alertWith({{u"OK"_s}});
        content.accessory = QVariant::fromValue<QWidget *>(&box);
        onceShown([&box](AlertDialog &dialog) {
            QVERIFY(box.isVisible() && dialog.isAncestorOf(&box));
            QTest::keyClick(&box, Qt::Key_Space);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        QCOMPARE(presenter.runModal(content), alertFirstButton);
        QVERIFY(box.isChecked() && box.parent() == nullptr && !box.isVisible());
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

    void sheetsBlockTheirWindowOnly()
    {
        WidgetAlertPresenter presenter;
        QWidget window;
        window.show();
        QList<int> answers;
        const auto completion = [&answers](int answer) {
            answers.append(answer);
        };
        QVERIFY(presenter.windowEndsSheets(&window));
        presenter.beginSheet(alertWith({{u"OK"_s}, {u"Cancel"_s}}), &window, completion);
        auto *sheet = window.findChild<AlertDialog *>();
        QVERIFY(sheet->isVisible());
        QCOMPARE(sheet->windowModality(), Qt::WindowModal);
        QVERIFY(answers.isEmpty());
        QTest::keyClick(sheet, Qt::Key_Return);
        QCOMPARE(answers, QList<int>{alertFirstButton});

        presenter.beginSheet(alertWith({{u"OK"_s}, {u"Cancel"_s}}), &window, completion);
        presenter.windowEndSheet(&window);
        QCOMPARE(answers, (QList<int>{alertFirstButton, alertStopped}));
        QTRY_VERIFY(window.findChildren<AlertDialog *>().isEmpty());
        presenter.windowEndSheet(&window);
        QCOMPARE(answers.size(), 2);
    }

    void sheetsEndWithTheirWindow()
    {
        WidgetAlertPresenter presenter;
        auto window = std::make_unique<QWidget>();
        window->show();
        bool answered = false;
        presenter.beginSheet(alertWith({{u"OK"_s}}), window.get(), [&answered](int) { answered = true; });
        const QPointer<AlertDialog> sheet = window->findChild<AlertDialog *>();
        QVERIFY(sheet);
        window.reset();
        QVERIFY(!sheet && !answered);
    }

    void factsComeFromTheBundle()
    {
        const QTemporaryDir folder;
        const auto told = [&folder](const QMap<QString, QString> &information) {
            writeFile(folder.filePath(u"Info.plist"_s), propertyList(information));
            const MainBundle bundle(u"/x/My Program.v2.app"_s, folder.path());
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
        const QTemporaryDir folder;
        const auto write = [&folder](const QString &version) {
            return writeFile(folder.filePath(u"Info.plist"_s),
                propertyList({{u"CFBundleName"_s, u"<i>N</i>"_s}, {u"CFBundleVersion"_s, version},
                    {u"NSHumanReadableCopyright"_s, u"© all"_s}}));
        };
        QVERIFY(write(u"7"_s));
        MainBundle bundle(u"/x"_s, folder.path());
        SmallWindows windows(bundle);
        const QPointer<BrevokAboutController> first = &windows.aboutController();
        first->showWindow();
        QCOMPARE(&windows.aboutController(), first.data());
        QCOMPARE(first->findChild<QLabel *>(u"name"_s)->text(), u"<i>N</i>"_s);
        QCOMPARE(first->findChild<QLabel *>(u"name"_s)->textFormat(), Qt::PlainText);
        QCOMPARE(first->findChild<QLabel *>(u"version"_s)->text(), u"Version 7 (7, 15)"_s);
        QCOMPARE(first->findChild<QLabel *>(u"copyright"_s)->text(), u"© all"_s);
        QVERIFY(!first->findChild<QLabel *>(u"icon"_s)->pixmap().isNull());
        QTest::keyClick(first, Qt::Key_Escape);
        QTRY_VERIFY(!first);

        QVERIFY(write(u"8"_s));
        bundle = MainBundle(u"/x"_s, folder.path());
        BrevokAboutController &second = windows.aboutController();
        QCOMPARE(second.findChild<QLabel *>(u"version"_s)->text(), u"Version 8 (8, 15)"_s);
        second.showWindow();
        second.close();
        QTRY_VERIFY(QApplication::topLevelWidgets().isEmpty());
    }

    void updateWindowsShowAndClose()
    {
        const QTemporaryDir folder;
        const MainBundle bundle(u"/x"_s, folder.path());
        SmallWindows windows(bundle);
        BrevokUpdateProgressController &progress = windows.updateProgressController();
        progress.showWindow();
        QTest::mouseClick(progress.findChild<QPushButton *>(), Qt::LeftButton);
        QVERIFY(!progress.isVisible());
        QCOMPARE(&windows.updateProgressController(), &progress);

        BrevokUpdateResultController &result = windows.updateResultController();
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
        const QTemporaryDir folder;
        const MainBundle bundle(u"/x"_s, folder.path());
        SmallWindows windows(bundle);
        auto &shown = windows.window<WebAddressWindow>();
        QWidget asking;
        focus(asking);
        const QString address = u"https://example.com/"_s + QString(500, u'a');
        shown.showAddress(QUrl(address), &asking);
        QVERIFY(QTest::qWaitForWindowActive(&shown));
        const auto *text = shown.findChild<QPlainTextEdit *>(u"address"_s);
        QCOMPARE(text->toPlainText(), address); // without places to break
        QCOMPARE(text->textCursor().selectedText(), address);
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
        const QTemporaryDir folder;
        const MainBundle bundle(u"/x"_s, folder.path());
        SmallWindows windows(bundle);
        QWidget asking;
        QWidget elsewhere;
        asking.show();
        BrevokUpdateProgressController &progress = windows.updateProgressController();
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
