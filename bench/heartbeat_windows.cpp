// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// How long a window holds the main thread when somebody else's text of a megabyte is to be shown.

#include "Heartbeat.h"
#include "platform/PropertyLists.h"
#include "ui/alerts/AlertDialog.h"
#include "ui/PanelRig.h"
#include "ui/widgets/PanelLabels.h"
#include "ui/windows/SmallWindows.h"
#include "ui/windows/WebAddressWindow.h"

#include <QApplication>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

constexpr int megabyte = 1024 * 1024;

// Whether it came up: it is painted once.
bool painted(QWidget &window)
{
    QCoreApplication::processEvents();
    return window.isVisible() && !window.grab().isNull();
}

void showInPanel(bench::Heartbeat &heart, const QString &text)
{
    testing::PanelRig rig(true);
    testing::fillCatalogue(rig, 20);
    rig.open();
    QWidget &panel = *rig.panel->window();
    heart.watch("a long cause of a failed check", [&] {
        Q_EMIT rig.rig.packages.ownCheckFailed(text);
        return painted(panel);
    });
    heart.watch("a long name of a package", [&] {
        rig.rig.packages.updateWithArray({testing::PanelRig::package(text, u"p"_s, text, text)});
        return painted(panel);
    });
    heart.watch("a long reason in a row", [&] {
        auto *note = rig.control<ElidedLabel>(0, "note");
        note->setText(text);
        note->setExplanation(text);
        return painted(panel);
    });
    heart.watch("a long reason below the form", [&] {
        rig.panel->showAccountTab();
        rig.child<FailureLabel>("signInFailure")->setFailure(text);
        return painted(panel);
    });
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    bench::Heartbeat heart;
    const QString words = u"some words of a very long story\n"_s.repeated(megabyte / 32);
    const QString word(megabyte, u'w');
    for (const QString &text : {words, word}) {
        showInPanel(heart, text);
        const MainBundle bundle(u"/x"_s, u"/x"_s);
        SmallWindows windows(bundle);
        heart.watch("a long result", [&] {
            BrevokUpdateResultController &result = windows.updateResultController();
            result.setTitleString(text);
            result.setLabelString(text);
            result.showWindow();
            return painted(result);
        });
        heart.watch("a long address", [&] {
            auto &address = windows.window<WebAddressWindow>();
            address.showAddress(QUrl(u"https://example.com/"_s + text), nullptr);
            return painted(address);
        });
        heart.watch("a long alert", [&] {
            AlertDialog alert(
                {.messageText = text, .informativeText = text, .icon = {}, .buttons = {}, .accessory = {}});
            alert.show();
            return painted(alert);
        });
    }
    return 0;
}
