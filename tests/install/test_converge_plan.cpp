// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/ConvergeOutcome.h"
#include "install/ConvergePlan.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::Table;
using Status = PackageStatus;

namespace {

// The plan in one line.
QString text(const ConvergePlan &plan)
{
    return u"remove %1, install %2, wait %3, unknown %4, notes %5"_s.arg(plan.removals.join(u' '),
        plan.installs.join(u' '), plan.waiting.join(u' '), plan.unknown.join(u' '), plan.notes.join(u' '));
}

} // namespace

using StatusesDecide = Table<Status, bool, bool, bool>;
using WishesDecide = Table<PackageWishes, bool, QString>;

class ConvergePlanTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void statusesDecide_data()
    {
        const StatusesDecide add;
        const auto row = [&add](Status status, bool installs, bool removes, bool updates) {
            add(packageStatusName(status).toUtf8(), status, installs, removes, updates);
        };
        row(Status::MissingData, true, true, false);
        row(Status::NotInstalled, true, false, false);
        row(Status::NotUpdated, true, true, true);
        row(Status::UpToDate, false, true, false);
        row(Status::InProgress, true, true, false);
        row(Status::Mixed, true, true, false);
        row(Status::MixedNotUpdated, true, true, true);
    }

    void statusesDecide()
    {
        const auto [status, installsRequired, removesForbidden, updates] = StatusesDecide::current();
        const QStringList one{u"P"_s};
        const QMap<QString, Status> statuses{{u"P"_s, status}};
        QCOMPARE(planConvergence({.required = one}, false, statuses).installs == one, installsRequired);
        QCOMPARE(planConvergence({.forbidden = one}, true, statuses).removals == one, removesForbidden);
        QCOMPARE(planConvergence({}, true, statuses).installs == one, updates);
        QCOMPARE(planConvergence({}, false, statuses).waiting == one, updates);
    }

    void wishesDecide_data()
    {
        const WishesDecide row;
        row("no wish", {}, false, "remove , install , wait old, unknown , notes ");
        row("updates", {}, true, "remove , install old, wait , unknown , notes ");
        row("a required one is updated anyway", {.required = {u"old"_s}}, false,
            "remove , install old, wait , unknown , notes ");
        row("once each", {.required = {u"new"_s, u"old"_s, u"new"_s}}, true,
            "remove , install new old, wait , unknown , notes ");
        row("a forbidden one is not updated", {.forbidden = {u"old"_s, u"old"_s}}, true,
            "remove old, install , wait , unknown , notes ");
        row("unknown ones", {.required = {u"x"_s, u"x"_s}, .forbidden = {u"y"_s}}, true,
            "remove , install old, wait , unknown x, notes 'y' is forbidden, but no package has this "
            "prefix.");
        row("both", {.required = {u"new"_s, u"old"_s}, .forbidden = {u"old"_s}}, true,
            u"remove old, install new, wait , unknown , notes 'old' is both required and forbidden: "
            u"forbidden "
            "counts."_s);
    }

    void wishesDecide()
    {
        const auto [wishes, autoUpdate, plan] = WishesDecide::current();
        const QMap<QString, Status> statuses{{u"current"_s, Status::UpToDate},
            {u"new"_s, Status::NotInstalled}, {u"old"_s, Status::NotUpdated}};
        QCOMPARE(text(planConvergence(wishes, autoUpdate, statuses)), plan);
    }

    // Each build of a plug-in has a command of its own for the same place.
    void placesAreToldOnce()
    {
        using End = PluginOutcome::End;
        InstallOutcome builds;
        for (const End end : {End::Skipped, End::Skipped, End::Failed, End::Failed}) {
            builds.entries.append({.end = end, .plugin = u"A"_s, .target = u"/T"_s});
        }
        builds.entries.append({.end = End::Skipped, .plugin = u"A"_s, .target = u"/U"_s});
        ConvergeOutcome outcome;
        outcome.add(u"P"_s, u"Pack"_s, builds);
        QCOMPARE(outcome.deferred.size(), 2);
        QCOMPARE(outcome.failed.size(), 1);
    }
};

QTEST_GUILESS_MAIN(ConvergePlanTest)
#include "test_converge_plan.moc"
