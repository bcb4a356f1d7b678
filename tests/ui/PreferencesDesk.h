// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/BrevokAlertQueue.h"
#include "service/BrevokSession.h"
#include "service/Connectivity.h"
#include "service/NetworkFactory.h"
#include "support/FakePlatform.h"
#include "support/FakeRouteLookup.h"
#include "support/FakeTimerRuns.h"
#include "support/IdleUpdater.h"
#include "support/MemorySettingsStore.h"
#include "support/RecordingOpener.h"
#include "support/SampleBundles.h"
#include "support/ScratchStateStore.h"
#include "support/ScriptedAlertPresenter.h"
#include "support/StoredSettings.h"
#include "targets/BrevokTargetApps.h"
#include "ui/preferences/BrevokPreferencesController.h"

#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>

namespace brevok::testing {

using namespace Qt::StringLiterals;

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
            presenter, opener, timerRuns, QUrl(u"https://service.example/base"_s)});
        window->showWindow();
    }
    void openTargets()
    {
        open();
        window->showTargets();
    }
    void openSettings()
    {
        open();
        window->switchTab(BrevokPreferencesController::Page::Settings);
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
    /// Of InDesign CC 2019.
    void addTargets(const QStringList &paths)
    {
        for (const QString &path : paths) {
            targets->insertTarget(path, u"Adobe InDesign"_s, u"140"_s);
        }
    }
    /// The Plug-Ins folder of a new host application.
    [[nodiscard]] QString makeHost(
        const QString &name, const QString &version, const QString &signature = u"InDn"_s) const
    {
        return QDir::cleanPath(writeHostApplication(folder.path(), name, version, name, signature));
    }
    /// Chooses a folder in the sheet as a user does.
    void choose(const QString &path) const
    {
        click("choosePath");
        QTRY_VERIFY(chooser() != nullptr);
        QPointer<QFileDialog> chooser = this->chooser();
        QCOMPARE(chooser->windowTitle(), u"Chose Plug-Ins directory"_s);
        chooser->findChild<QLineEdit *>(u"fileNameEdit"_s)->setText(path);
        QTest::keyClick(chooser->findChild<QLineEdit *>(u"fileNameEdit"_s), Qt::Key_Return);
        QTRY_VERIFY(chooser.isNull());
        QTRY_VERIFY(find<QPushButton>("choosePath")->isEnabled()); // what is beside it is read
    }
    /// The chooser of folders that is open.
    [[nodiscard]] QFileDialog *chooser() const
    {
        const QList<QFileDialog *> dialogs = window->findChildren<QFileDialog *>();
        return dialogs.isEmpty() ? nullptr : dialogs.last();
    }
    /// The sheet that asks for a target; null while none is open.
    [[nodiscard]] QDialog *sheet() const
    {
        auto *sheet = find<QDialog>("targetDataSheet");
        return sheet != nullptr && sheet->isVisible() ? sheet : nullptr;
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
    FakeTimerRuns timerRuns;
    std::optional<BrevokSession> session;
    std::optional<BrevokTargetApps> targets;
    std::optional<BrevokPreferencesController> window;
};

/// What the page of the targets says.
inline QString shownNotice(const Desk &desk)
{
    QString told = desk.find<QLabel>("targetsNotice")->text();
    return told.remove(QChar(0x200b)); // where a long path may be broken
}

/// Of the targets, in the order of their rows.
inline QStringList selectedPaths(const Desk &desk)
{
    QStringList labels;
    const QModelIndexList rows = desk.table()->selectionModel()->selectedRows(1);
    for (const QModelIndex &row : rows) {
        labels.append(row.data().toString().section(u" ["_s, 0, 0));
    }
    return labels;
}

} // namespace brevok::testing
