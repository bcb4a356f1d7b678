// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "../reporting/ReportRig.h"
#include "../updates/UpdaterStage.h"
#include "PanelRig.h"
#include "PreferencesDesk.h"
#include "SmallRig.h"
#include "ui/alerts/AlertDialog.h"
#include "ui/widgets/PanelButtons.h"
#include "ui/widgets/PanelLabels.h"
#include "ui/windows/BrevokBugReporterController.h"
#include "ui/windows/BrevokSoftwareUpdateController.h"
#include "ui/windows/ReportBodyView.h"
#include "ui/windows/WebAddressWindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <algorithm>
#include <memory>

namespace brevok::testing {

/// A window as a user may meet it, and what it is made of.
struct Scene {
    std::shared_ptr<void> rig;
    QWidget *window = nullptr;
};

struct SceneMaker {
    const char *name;
    Scene (*make)();
};

/// What is @p rig's and shown by @p window.
template <class Rig> Scene scene(std::shared_ptr<Rig> rig, QWidget *window)
{
    return {std::move(rig), window};
}

/// What has to come before a scene is as it is meant.
inline void await(const std::function<bool()> &come)
{
    if (!QTest::qWaitFor(come, patience)) {
        qFatal("the window did not come up");
    }
}

inline Scene shown(Scene scene)
{
    scene.window->show();
    scene.window->activateWindow();
    await([&scene] { return scene.window->isActiveWindow(); });
    return scene;
}

/// Whether a user can press it, type or choose in it.
inline bool isClickable(const QWidget *widget)
{
    if (const auto *text = qobject_cast<const QPlainTextEdit *>(widget)) {
        return !text->isReadOnly();
    }
    if (qobject_cast<const QLineEdit *>(widget->parentWidget()) != nullptr) {
        return false; // what empties the field, as its keys do
    }
    return qobject_cast<const QAbstractButton *>(widget) != nullptr
        || qobject_cast<const QLineEdit *>(widget) != nullptr
        || qobject_cast<const QComboBox *>(widget) != nullptr;
}

/// The widgets of a window that are in full sight.
inline QList<QWidget *> widgetsInSight(const QWidget &window)
{
    QList<QWidget *> found = window.findChildren<QWidget *>();
    found.removeIf([&window](const QWidget *widget) {
        return widget->window() != &window || !widget->isVisible()
            || widget->visibleRegion().boundingRect() != widget->rect();
    });
    return found;
}

/// How a list names a widget that a check complains of.
inline QString described(const QWidget &widget)
{
    const QString text = widget.property("text").toString();
    return u"%1 '%2' %3"_s.arg(QString::fromLatin1(widget.metaObject()->className()), widget.objectName(),
        widget.accessibleName().isEmpty() ? text : widget.accessibleName());
}

// the panel

template <bool signedIn> Scene panelWithoutPackages()
{
    auto rig = std::make_shared<PanelRig>(signedIn);
    rig->open();
    return scene(rig, rig->panel->window());
}

/// All that can go wrong before there is a list.
inline Scene panelInTrouble()
{
    auto rig = std::make_shared<PanelRig>(false);
    rig->settings.setProblem(u"the disk is full"_s);
    rig->open();
    rig->child<FailureLabel>("signInFailure")->setFailure(u"Wrong user name or password."_s);
    return scene(rig, rig->panel->window());
}

/// A row in every state, the one that ranks first included, below the notice that there is no network.
inline Scene panelWithRows()
{
    struct Package {
        const char *prefix;
        bool forBoth; ///< both host applications
        const char *installed; ///< version, in the first of them
    };
    const QList<Package> wanted{{"unknown", false, nullptr}, {"missing", false, nullptr},
        {"outdated", false, "1.0"}, {"current", false, "2.0"}, {"mixed", true, "2.0"},
        {"mixedold", true, "1.0"}, {"loading", false, nullptr}, {"failing", false, nullptr},
        {"0xr5700", true, "2.0"}};
    auto rig = std::make_shared<PanelRig>(true);
    const QString first = rig->rig.addTarget(u"Adobe InDesign CC 2019"_s, u"140"_s);
    rig->rig.addTarget(u"Adobe InDesign CC 2020"_s, u"150"_s);
    QJsonArray builds;
    QJsonArray packages;
    for (const Package &package : wanted) {
        const QString prefix = QString::fromLatin1(package.prefix);
        if (prefix != u"unknown"_s) {
            builds.append(InstallRig::build(prefix, prefix, 140));
        }
        if (package.forBoth) {
            builds.append(InstallRig::build(prefix, prefix, 150));
        }
        if (package.installed != nullptr) {
            writeInstalledPlugin(first, prefix, QString::fromLatin1(package.installed), u"14.0"_s);
        }
        packages.append(PanelRig::package(u"Package "_s + prefix, prefix, u"2.0"_s, u"https://x/"_s));
    }
    rig->rig.plugins.updateWithArray(builds);
    rig->rig.packages.updateWithArray(packages);
    rig->open();
    await([&rig, &wanted] {
        return rig->rig.packages.packagesStatus().size() == wanted.size() && !rig->rig.packages.updating();
    });
    const QList<PackageRow> &rows = rig->panel->packagesTab()->list().rows();
    const auto rowOf = [&rows](const QString &prefix) {
        return std::ranges::find(rows, prefix, &PackageRow::prefix) - rows.cbegin();
    };
    await([&] { return rows.size() == wanted.size(); });
    for (const QString &prefix : {u"failing"_s, u"loading"_s}) {
        rig->control<PanelButton>(rowOf(prefix), "actionButton")->click();
        await([&rig] { return !rig->rig.service.downloads.isEmpty(); });
        if (prefix == u"failing"_s) {
            rig->rig.answerDownload("too short");
            await([&] {
                return rig->control<QWidget>(rowOf(prefix), "note")->accessibleName() == u"wrong length"_s;
            });
        }
    }
    rig->rig.service.downloads.first().progress(1'000'000, 4'000'000);
    rig->routes.flags = 0;
    rig->panel->packagesTab()->updateNotice();
    return scene(rig, rig->panel->window());
}

/// The user's own check failed, for a reason of very many words.
inline Scene panelFailedCheck()
{
    auto rig = std::make_shared<OpenPanel>(4);
    Q_EMIT rig->rig.packages.ownCheckFailed(u"The server says that it is tired. "_s.repeated(20));
    return scene(rig, rig->panel->window());
}

template <bool begun> Scene panelWithUpdates()
{
    auto rig = std::make_shared<OpenPanel>(6, u"1.0"_s);
    auto *button = rig->child<PanelButton>("updateAllButton");
    await([button] { return button->isVisible(); });
    if (begun) {
        button->click();
        await([&rig] { return !rig->rig.service.downloads.isEmpty(); });
    }
    return scene(rig, rig->panel->window());
}

inline Scene panelNothingFound()
{
    auto rig = std::make_shared<OpenPanel>(24);
    auto *field = rig->child<QLineEdit>("searchField");
    await([field] { return field->isVisible(); });
    field->setText(u"zebra"_s);
    return scene(rig, rig->panel->window());
}

// the preferences

template <bool signedIn> Scene preferences()
{
    auto desk = std::make_shared<Desk>(signedIn ? u"id"_s : QString());
    desk->open();
    return scene(desk, &*desk->window);
}

inline std::shared_ptr<Desk> deskWithTargets()
{
    auto desk = std::make_shared<Desk>();
    desk->addTargets({u"/A/Plug-Ins"_s, u"/B/Plug-Ins"_s, u"/C/Plug-Ins"_s});
    desk->targets->setTarget(u"/B/Plug-Ins"_s, false);
    desk->openTargets();
    desk->table()->selectRow(2);
    return desk;
}

inline Scene preferencesTargets()
{
    const auto desk = deskWithTargets();
    return scene(desk, &*desk->window);
}

inline Scene preferencesRemoved()
{
    const auto desk = deskWithTargets();
    desk->click("removeButton");
    return scene(desk, &*desk->window);
}

inline Scene preferencesSheet()
{
    const auto desk = deskWithTargets();
    desk->click("insertButton");
    return scene(desk, desk->find<QDialog>("targetDataSheet"));
}

inline Scene preferencesSettings()
{
    auto desk = std::make_shared<Desk>();
    desk->open();
    desk->find<QCheckBox>("autoUpdate")->setChecked(true);
    desk->find<QAction>("settingsItem")->trigger();
    return scene(desk, &*desk->window);
}

// alerts

inline Scene alertWith(const QString &informativeText, const QList<AlertButton> &buttons)
{
    AlertContent content;
    content.messageText = u"Invalid Plug-Ins path selected!"_s;
    content.informativeText = informativeText;
    content.style = AlertStyle::Critical;
    content.buttons = buttons;
    auto dialog = std::make_shared<AlertDialog>(content);
    QWidget *window = dialog.get();
    return scene(dialog, window);
}

/// Return means the second, too.
inline Scene alertRemove()
{
    return alertWith(u"It is removed from all your applications."_s,
        {{u"Remove"_s}, {.title = u"Cancel"_s, .key = AlertKey::ReturnAndEscape}});
}

inline Scene alertLong()
{
    return alertWith(u"https://service.example/"_s + QString(20000, u'w'), {{u"Close"_s}});
}

// the bug reporter

struct ReporterRig {
    ReportRig report;
    BrevokBugReporterController window{{report.reporter, report.alerts, [] {
                                            return u"ada@example.com"_s;
                                        }}};
};

inline Scene bugReport()
{
    auto rig = std::make_shared<ReporterRig>();
    rig->window.showWindow();
    return scene(rig, &rig->window);
}

inline Scene reportBody()
{
    const QByteArray body = bugReportBody(u"ada@example.com"_s,
        {{u"Application"_s, u"Version 1"_s}, {u"Description"_s, u"It broke"_s}, {u"orlec.log"_s, u"a\nb"_s},
            {u"InDesign.crash"_s, u"why"_s}});
    auto view = std::make_shared<ReportBodyView>(body);
    QWidget *window = view.get();
    return scene(view, window);
}

// the small windows

template <auto window> Scene small()
{
    auto rig = std::make_shared<SmallRig>();
    return scene(rig, &(rig->windows.*window)());
}

inline Scene updateResult()
{
    auto rig = std::make_shared<SmallRig>();
    BrevokUpdateResultController &window = rig->windows.updateResultController();
    window.setTitleString(u"You're up-to-date!"_s);
    window.setLabelString(u"No updates were found."_s);
    window.showWindow();
    return scene(rig, &window);
}

inline Scene webAddress()
{
    auto rig = std::make_shared<SmallRig>();
    auto &window = rig->windows.window<WebAddressWindow>();
    window.showAddress(QUrl(u"https://service.example/"_s + QString(500, u'w')), nullptr);
    return scene(rig, &window);
}

struct UpdateRig final : UpdaterStage {
    MainBundle bundle{u"/x"_s, scratch.path()};
    RecordingOpener urls;
    BrevokSoftwareUpdateController window{{*updater, bundle, urls}};
};

inline Scene softwareUpdate()
{
    auto rig = std::make_shared<UpdateRig>();
    SampleItem offered = rig->item(rig->maker.sign(rig->package), rig->package.size());
    offered.more = "<description><![CDATA[<h2>New</h2><p>Faster.</p>]]></description>";
    rig->serve(offered.xml());
    await([&rig] { return rig->check() == UpdateState::Phase::Offered; });
    return scene(rig, &rig->window);
}

inline const QList<SceneMaker> &everyWindow()
{
    static const QList<SceneMaker> all{{"panel, signed out", panelWithoutPackages<false>},
        {"panel, in trouble", panelInTrouble}, {"panel, without targets", panelWithoutPackages<true>},
        {"panel, rows", panelWithRows}, {"panel, failed check", panelFailedCheck},
        {"panel, update all", panelWithUpdates<false>}, {"panel, updating", panelWithUpdates<true>},
        {"panel, nothing found", panelNothingFound}, {"preferences, signed out", preferences<false>},
        {"preferences, signed in", preferences<true>}, {"preferences, targets", preferencesTargets},
        {"preferences, removed", preferencesRemoved}, {"preferences, sheet", preferencesSheet},
        {"preferences, settings", preferencesSettings}, {"alert, remove", alertRemove},
        {"alert, long", alertLong}, {"bug report", bugReport}, {"bug report, body", reportBody},
        {"about", small<&SmallWindows::aboutController>},
        {"update, progress", small<&SmallWindows::updateProgressController>},
        {"update, result", updateResult}, {"web address", webAddress}, {"software update", softwareUpdate}};
    return all;
}

/// A row of a table of tests for each window.
inline void addEveryWindow()
{
    QTest::addColumn<qsizetype>("index");
    for (qsizetype i = 0; i < everyWindow().size(); ++i) {
        QTest::newRow(everyWindow().at(i).name) << i;
    }
}

/// The window of the row that runs.
inline Scene shownRow()
{
    QFETCH(qsizetype, index);
    return shown(everyWindow().at(index).make());
}

} // namespace brevok::testing
