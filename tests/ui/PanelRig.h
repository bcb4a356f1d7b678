// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "../install/InstallRig.h"
#include "install/UpdateRun.h"
#include "platform/StorageWatch.h"
#include "service/BrevokSession.h"
#include "service/Connectivity.h"
#include "service/NetworkFactory.h"
#include "support/FakeRouteLookup.h"
#include "support/IdleUpdater.h"
#include "support/MemorySettingsStore.h"
#include "support/RecordingOpener.h"
#include "surfaces/StatusItemPlace.h"
#include "ui/panel/BrevokPackageCellController.h"
#include "ui/panel/BrevokPanelController.h"
#include "ui/panel/PackageCellView.h"

#include <QApplication>
#include <QTest>

namespace brevok::testing {

using namespace Qt::StringLiterals;

constexpr int patience = 30000; // on a busy machine

/// Presses a key where the focus is.
inline void press(Qt::Key key)
{
    QWidget *focused = QApplication::focusWidget();
    QTest::keyClick(focused != nullptr ? focused : QApplication::activeWindow(), key);
}

class PlacedItem final : public StatusItemPlace {
public:
    std::optional<QRect> frame = QRect(600, 0, 24, 24);
    [[nodiscard]] std::optional<QRect> frameOnScreen() const override { return frame; }
    [[nodiscard]] QScreen *screen() const override { return nullptr; }
};

/// The panel over the real catalogue, targets and install flow; service, network and user are the test's.
struct PanelRig : private PanelKeeper {
    Q_DISABLE_COPY_MOVE(PanelRig)

    explicit PanelRig(bool signedIn, const QUrl &service = QUrl(QStringLiteral("https://localhost:1/base")),
        const QByteArray &authorities = {})
        : network({.baseUrl = service,
            .extraAuthorities = authorities,
            .reachabilityHost = QStringLiteral("public.example")})
    {
        if (signedIn) {
            rig.state.commit({{QStringLiteral("OrlecSessionData"), QString(),
                Record{{QStringLiteral("SessionId"), QStringLiteral("id")},
                    {QStringLiteral("orlecId"), QStringLiteral("ada@example.com")}}}});
        }
        session = std::make_unique<BrevokSession>(rig.state, network, connectivity, alerts, updater);
        panel = std::make_unique<BrevokPanelController>(BrevokPanelController::Collaborators{
            .session = *session,
            .plugins = rig.plugins,
            .packages = rig.packages,
            .targets = rig.targets,
            .flow = rig.flow,
            .updates = updates,
            .alerts = alerts,
            .connectivity = connectivity,
            .storage = storage,
            .urls = urls,
            .serviceUrl = service,
            .helpUrl = QUrl(QStringLiteral("https://help.example/")),
            .statusItem = [this] { return hasItem ? &item : nullptr; },
        });
    }
    ~PanelRig() override = default;

    InstallRig rig;
    UpdateRun updates{rig.flow, rig.packages};
    FakeRouteLookup routes;
    NetworkFactory network;
    Connectivity connectivity{network, routes};
    BrevokAlertQueue alerts{rig.presenter, *this};
    IdleUpdater updater;
    MemorySettingsStore settings;
    StorageWatch storage{settings, rig.state};
    RecordingOpener urls;
    PlacedItem item;
    bool hasItem = true;
    std::unique_ptr<BrevokSession> session;
    std::unique_ptr<BrevokPanelController> panel;

    static QJsonObject package(const QString &name, const QString &prefix,
        const QString &version = QStringLiteral("1.0"), const QString &info = {})
    {
        return {{PackageKeys::name, name}, {PackageKeys::prefix, prefix}, {PackageKeys::version, version},
            {PackageKeys::published, QStringLiteral("now")}, {PackageKeys::platform, QStringLiteral("Mac")},
            {PackageKeys::info, info}};
    }
    /// A named child of the panel's window.
    template <typename T> [[nodiscard]] T *child(const char *name) const
    {
        return panel->window()->findChild<T *>(QLatin1StringView(name));
    }
    /// A named control of a row in sight.
    template <typename T> [[nodiscard]] T *control(qsizetype row, const char *name) const
    {
        const BrevokPackageCellController *cell = panel->packagesTab()->list().controllerAt(row);
        return cell != nullptr ? cell->view()->findChild<T *>(QLatin1StringView(name)) : nullptr;
    }
    /// The view of a row in sight.
    [[nodiscard]] PackageCellView *row(qsizetype row) const
    {
        return panel->packagesTab()->list().controllerAt(row)->view();
    }
    void open()
    {
        panel->setHasActivePanel(true);
        QVERIFY(QTest::qWaitFor(
            [this] { return panel->window()->geometry() == panel->place().panel; }, patience));
    }

private:
    void setKeepOpenPanel(bool keepOpen) override { panel->setKeepOpenPanel(keepOpen); }
};

/// A catalogue of packages with one build each, of which every other one is installed, in @p installed.
inline void fillCatalogue(PanelRig &rig, int packages, const QString &installed = u"2.0"_s)
{
    const QString target = rig.rig.addTarget(u"Adobe InDesign"_s, u"140"_s);
    QJsonArray builds;
    QJsonArray list;
    for (int i = 0; i < packages; ++i) {
        const QString prefix = u"p%1"_s.arg(i, 5, 10, QChar(u'0'));
        builds.append(InstallRig::build(prefix, prefix, 140));
        list.append(PanelRig::package(u"Package "_s + prefix, prefix, u"2.0"_s, u"https://x/"_s + prefix));
        if (i % 2 == 1) {
            writeInstalledPlugin(target, prefix, installed, u"14.0"_s);
        }
    }
    rig.rig.plugins.updateWithArray(builds);
    rig.rig.packages.updateWithArray(list);
    const auto isCalculated = [&rig, packages] {
        return rig.rig.packages.packagesStatus().size() == packages && !rig.rig.packages.updating();
    };
    QVERIFY(QTest::qWaitFor(isCalculated, patience));
}

/// The panel open, of somebody who is signed in, over such a catalogue.
struct OpenPanel final : PanelRig {
    explicit OpenPanel(int packages = 0, const QString &installed = u"2.0"_s)
        : PanelRig(true)
    {
        if (packages > 0) {
            fillCatalogue(*this, packages, installed);
        }
        open();
    }
};

} // namespace brevok::testing
