// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/BrevokPackages.h"
#include "support/InRow.h"
#include "ui/panel/PackageRows.h"
#include "ui/panel/PanelLayout.h"
#include "ui/panel/PanelState.h"
#include "ui/panel/RowIcons.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::InRow;
using Status = PackageStatus;

namespace {

const QRect screen(0, 0, 1440, 900);

Record package(const QString &prefix)
{
    return {{PackageKeys::prefix, prefix}, {PackageKeys::name, prefix}, {PackageKeys::version, u"1"_s}};
}

QByteArray png(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(Qt::red);
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return data;
}

QByteArray svg(const QByteArray &body, const QByteArray &before = {})
{
    return before + "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 8 8'>" + body + "</svg>";
}

} // namespace

class TestPanelLayout final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void place()
    {
        const QList<std::tuple<const char *, QRect, QRect, QRect, int>> rows{
            {"under the item", {700, 0, 24, 24}, screen, {489, 24, 446, 694}, 223},
            {"odd width", {700, 0, 37, 22}, screen, {496, 22, 446, 694}, 223},
            {"right edge", {1400, 0, 40, 24}, screen, {986, 24, 446, 694}, 434},
            {"one point too far right", {1198, 0, 24, 24}, screen, {986, 24, 446, 694}, 224},
            {"left edge", {0, 0, 24, 24}, screen, {8, 24, 446, 694}, 4},
            {"bar at the bottom", {1000, 870, 24, 30}, screen, {789, 176, 446, 694}, 223},
            {"screen to the left", {-100, 60, 24, 24}, {-1280, 60, 1280, 1024}, {-454, 84, 446, 694}, 366},
            {"low screen", {700, 0, 24, 24}, {0, 0, 1366, 600}, {489, 24, 446, 568}, 223},
            {"low screen, bar at the bottom", {900, 570, 24, 30}, {0, 0, 1024, 600}, {570, 8, 446, 562}, 342},
        };
        for (const auto &[name, item, on, panel, arrowX] : rows) {
            const InRow in(name);
            const PanelPlace where = panelPlace(item, {on, on}, 24);
            QCOMPARE(where.upward, item.y() > 100);
            QCOMPARE(where.item, item.translated(0, where.upward ? -item.height() : item.height()));
            QCOMPARE(where.panel, panel);
            QCOMPARE(arrowXFor(where.item, where.panel), arrowX);
        }
        QCOMPARE(panelPlace({}, {screen, screen}, 24).item, QRect(708, 24, 24, 24)); // there is none
        // Away from the item's own bar, and from another at the other end of the screen.
        const QRect low(0, 0, 1024, 600);
        const ScreenRoom room{low, low.adjusted(0, 24, 0, -30)};
        QCOMPARE(panelPlace(QRect(900, 0, 24, 24), room, 24).panel, QRect(570, 24, 446, 600 - 24 - 30 - 8));
        QCOMPARE(panelPlace(QRect(900, 570, 24, 30), room, 24).panel, QRect(570, 32, 446, 570 - 32));
    }

    void arrowPointsAtTheItem()
    {
        const QRectF bounds(0, 0, 446, 694);
        QVERIFY(panelOutline(bounds, 223, false).contains(QPointF(223, 2)));
        QVERIFY(panelOutline(bounds, 223, true).contains(QPointF(223, 692)));
        QVERIFY(!panelOutline(bounds, 223, false).contains(QPointF(300, 2)));
        // As far as the edge, where the corner gives way, for items in the corners of the screen.
        for (const bool upward : {false, true}) {
            const double tip = upward ? 692 : 2;
            QVERIFY(panelOutline(bounds, 441, upward).contains(QPointF(440.5, tip)));
            QVERIFY(panelOutline(bounds, 5000, upward).contains(QPointF(445.5, tip)));
            QVERIFY(panelOutline(bounds, -100, upward).contains(QPointF(0.5, tip)));
            QVERIFY(!panelOutline(bounds, 223, upward).contains(QPointF(0.5, upward ? 684 : 10)));
        }
    }

    void duration()
    {
        QCOMPARE(openDuration(Qt::ShiftModifier), 1000);
        QCOMPARE(openDuration(Qt::ShiftModifier | Qt::AltModifier), 1000);
        QCOMPARE(openDuration(Qt::AltModifier), 100);
        QCOMPARE(openDuration(Qt::ShiftModifier | Qt::ControlModifier), 100);
        QVERIFY(logsOpening(Qt::ShiftModifier | Qt::AltModifier));
        QVERIFY(!logsOpening(Qt::ShiftModifier));
    }

    void order()
    {
        // "prefix=status", in the catalogue's order
        const QList<std::tuple<const char *, QString, QString>> rows{
            {"as listed", u"a=2 b"_s, u"a b"_s},
            {"priority, the later one first", u"a=4 0xr5000=2 b=4 0xr5000=2"_s, u"0xr5000 0xr5000 a b"_s},
            {"companion above all", u"0xr5000=2 0xr5700=2 a=4"_s, u"0xr5700 0xr5000 a"_s},
            {"companion, other prefix", u"KM#xR57=6 a=5"_s, u"KM#xR57 a"_s},
            {"companion up to date", u"0xr5700=4 a=4"_s, u"a"_s},
            {"companion mixed, outdated", u"0xr5700=7 a=4"_s, u"a"_s},
            {"nothing installed", u"0xr5700=3 a=2 b=1"_s, u"a b"_s},
            {"only a priority package installed", u"0xr5700=3 0xr5000=4"_s, u"0xr5000"_s},
        };
        for (const auto &[name, packages, expected] : rows) {
            const InRow in(name);
            QList<Record> records;
            QHash<QString, Status> statuses;
            const QStringList each = packages.split(u' ');
            for (const QString &entry : each) {
                records.append(package(entry.section(u'=', 0, 0)));
                if (entry.contains(u'=')) {
                    statuses.insert(entry.section(u'=', 0, 0), Status(entry.section(u'=', 1).toUInt()));
                }
            }
            QStringList shown;
            for (const PackageRow &row : packageRows(records, statuses)) {
                shown.append(row.prefix());
                QCOMPARE(row.status, statuses.value(row.prefix(), Status::MissingData));
            }
            QCOMPARE(shown.join(u' '), expected);
        }
    }

    void buttons()
    {
        const QList<std::tuple<Status, QString, QString>> rows{
            {Status::MissingData, u"a"_s, u"hidden"_s}, {Status::NotInstalled, u"a"_s, u"Install"_s},
            {Status::NotUpdated, u"a"_s, u"Update, Remove"_s},
            {Status::MixedNotUpdated, u"a"_s, u"Update, Remove"_s},
            {Status::UpToDate, u"KM#xR57"_s, u"Up To Date, disabled, small, Remove"_s},
            {Status::InProgress, u"a"_s, u"-, hidden, spinning"_s},
            {Status::Mixed, u"0xr5000"_s, u"Install, Remove"_s},
            {Status::Mixed, u"0xr5700"_s, u"Install"_s}, // the companion stays
        };
        for (const auto &[status, prefix, expected] : rows) {
            const RowButtons buttons = rowButtons(status, prefix);
            QStringList shown{buttons.actionTitle};
            shown << (buttons.actionVisible ? QString() : u"hidden"_s)
                  << (buttons.actionVisible && !buttons.actionEnabled ? u"disabled"_s : QString())
                  << (buttons.actionSmall ? u"small"_s : QString())
                  << (buttons.spinning ? u"spinning"_s : QString())
                  << (buttons.removeVisible ? u"Remove"_s : QString());
            shown.removeAll(QString());
            QCOMPARE(shown.join(u", "_s), expected);
        }
    }

    void names()
    {
        const PackageRow empty;
        QCOMPARE(empty.title(), u"- -"_s);
        PackageRow row{package(u"p"_s)};
        row.package.insert(PackageKeys::name, u" A\nB\u2028<b>C</b>\t"_s);
        QCOMPARE(row.title(), u"A B <b>C</b> 1"_s);
        row.package.insert(PackageKeys::name, u"\u202E"_s + QString(100'000, u'x'));
        QVERIFY(row.title().startsWith(u'x') && row.title().size() < 2000);
    }

    void failureNotes()
    {
        InstallOutcome outcome;
        QCOMPARE(failureNote(outcome), QString());
        outcome.entries.append({.plugin = u"A"_s, .targetName = u"InCopy"_s, .reason = u"Too late."_s});
        QCOMPARE(failureNote(outcome), u"InCopy: Too late."_s);
        outcome.entries.append({.plugin = u"B"_s, .targetName = u"InCopy"_s, .reason = u"Too late."_s});
        QCOMPARE(failureNote(outcome), u"InCopy: Too late (and 1 more)"_s);
    }

    void progress()
    {
        QCOMPARE(progressText({12'400'000, 38'100'000}), u"Downloading 12.4 of 38.1 MB"_s);
        QCOMPARE(progressText({0, 840'000}), u"Downloading 0 of 840 kB"_s);
        QCOMPARE(progressText({12'400'000, 0}), u"Downloading 12.4 MB"_s);
        QCOMPARE(progressText({10, 10}), u"Installing…"_s);
        QCOMPARE((DownloadProgress{30, 20}.permille()), 1000);
        QCOMPARE((DownloadProgress{30, 0}.permille()), 0);
    }

    void accountTab()
    {
        using State = AccountTabState;
        QVERIFY(accountTabState({})
            == (State{.emailEnabled = true, .controlsEnabled = true, .controlsVisible = true}));
        QVERIFY(accountTabState({.updating = true}) == State{.spinning = true});
        QVERIFY(
            accountTabState({.signedIn = true}) == (State{.controlsEnabled = true, .showPackagesTab = true}));
        QVERIFY(accountTabState({.signedIn = true, .selected = PanelTab::Packages})
            == State{.controlsEnabled = true});
        QVERIFY(accountTabState({.selected = PanelTab::Packages}).showAccountTab);
        QVERIFY(!accountTabState({.selected = PanelTab::Packages, .panelOpen = true}).showAccountTab);
        QVERIFY(!accountTabState({.updating = true, .selected = PanelTab::Packages}).showAccountTab);
    }

    void credentials()
    {
        using Step = CredentialStep;
        QCOMPARE(returnOnCredentials(true, {}, u"p"_s), Step::None);
        QCOMPARE(returnOnCredentials(true, u"e"_s, u"p"_s), Step::FocusPassword);
        QCOMPARE(returnOnCredentials(false, {}, u"p"_s), Step::FocusEmail);
        QCOMPARE(returnOnCredentials(false, u"e"_s, {}), Step::None);
        QCOMPARE(returnOnCredentials(false, u"e"_s, u"p"_s), Step::SignIn);
    }

    void notices()
    {
        NoticeFacts facts{.signedIn = false, .networkReachable = false, .hasTargets = false, .loading = true};
        facts.silentSince = QDateTime(QDate(2024, 5, 6), QTime(7, 8));
        QCOMPARE(noticeKind(facts), NoticeKind::SignedOut);
        facts.signedIn = true;
        QCOMPARE(noticeKind(facts), NoticeKind::Offline);
        facts.networkReachable = true;
        QCOMPARE(noticeKind(facts), NoticeKind::ServiceSilent);
        const auto told = [&facts](int day) {
            const QDateTime now(QDate(2024, 5, day), QTime(9, 0));
            return noticeText(NoticeKind::ServiceSilent, facts.silentSince, now).text;
        };
        QVERIFY(told(6).contains(u"07:08"_s) && !told(6).contains(u"2024"_s));
        QVERIFY(told(7).contains(u"2024"_s));
        facts.silentSince = {};
        QCOMPARE(noticeKind(facts), NoticeKind::NoTargets);
        facts.hasTargets = true;
        QCOMPARE(noticeKind(facts), NoticeKind::Loading);
        facts.loading = false;
        QCOMPARE(noticeKind(facts), NoticeKind::EmptyCatalogue);
        facts.listed = true;
        QCOMPARE(noticeKind(facts), NoticeKind::None);
        facts.networkReachable = false;
        facts.checkFailed = true; // which is told elsewhere, with its cause
        QCOMPARE(noticeKind(facts), NoticeKind::None);
    }

    void icons()
    {
        const QByteArray circle = "<circle cx='4' cy='4' r='4' fill='red'/>";
        const QList<std::tuple<const char *, QByteArray, bool>> rows{
            {"picture", png(64, 64), true},
            {"one pixel", png(1, 1), true},
            {"wide", png(3000, 10), true},
            {"nothing", {}, false},
            {"text", "hello", false},
            {"cut short", png(64, 64).first(60), false},
            {"large", "P4 8000 8000\n" + QByteArray(8'000'000, '\0'), false},
            {"long", "P4 9000 1\n" + QByteArray(1125, '\0'), false},
            {"drawing", svg(circle), true},
            {"empty view box", "<svg viewBox='0 0 0 0'/>", false},
            {"broken drawing", svg(circle).chopped(3), false},
            {"references", svg("<g id='a'>" + circle + "</g><use href='#a'/>"), false},
            {"entities", svg("<title>&a;</title>", "<!DOCTYPE svg [<!ENTITY a 'b'>]>"), false},
            {"dashes", svg("<path d='M0 0h8' stroke='red' stroke-dasharray='1e-9'/>"), false},
            {"styled dashes", svg("<path d='M0 0h8' style='stroke-dasharray:1e-9'/>"), false},
            {"too many shapes", svg(circle.repeated(3000)), false},
            {"zipped", QByteArray("\x1f\x8b\x08\x00", 4), false},
        };
        for (const auto &[name, data, shown] : rows) {
            const InRow in(name);
            const QImage icon = decodedIcon(data, 96);
            QCOMPARE(!icon.isNull(), shown);
            if (!icon.isNull()) {
                QCOMPARE(icon.size(), QSize(96, 96));
                QCOMPARE(icon.pixelColor(48, 48), QColor(Qt::red));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestPanelLayout)
#include "test_panel_layout.moc"
