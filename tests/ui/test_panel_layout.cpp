// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/BrevokPackages.h"
#include "support/ZipWriter.h"
#include "ui/panel/PackageRows.h"
#include "ui/panel/PanelLayout.h"
#include "ui/panel/PanelState.h"
#include "ui/panel/RowIcons.h"

#include <QBuffer>
#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;
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

// The head of a picture that claims a size, with nothing behind it.
QByteArray pngThatClaims(quint32 width, quint32 height)
{
    QByteArray data = png(4, 4);
    const auto put = [&data](qsizetype at, quint32 value) {
        for (int i = 0; i < 4; ++i) {
            data[at + i] = static_cast<char>(value >> (24U - 8U * static_cast<unsigned>(i)));
        }
    };
    put(16, width);
    put(20, height);
    put(29, testing::zip_detail::checksum(data.sliced(12, 17))); // the same sum as in zip archives
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

    void place_data()
    {
        QTest::addColumn<QRect>("item");
        QTest::addColumn<QRect>("on");
        QTest::addColumn<QRect>("rect");
        QTest::addColumn<QRect>("panel");
        QTest::addColumn<int>("arrowX");
        QTest::addColumn<bool>("upward");

        QTest::newRow("under the item") << QRect(700, 0, 24, 24) << screen << QRect(700, 24, 24, 24)
                                        << QRect(489, 24, 446, 694) << 223 << false;
        QTest::newRow("odd width") << QRect(700, 0, 37, 22) << screen << QRect(700, 22, 37, 22)
                                   << QRect(496, 22, 446, 694) << 223 << false;
        QTest::newRow("right edge") << QRect(1400, 0, 40, 24) << screen << QRect(1400, 24, 40, 24)
                                    << QRect(986, 24, 446, 694) << 434 << false;
        QTest::newRow("one point too far right")
            << QRect(1198, 0, 24, 24) << screen << QRect(1198, 24, 24, 24) << QRect(986, 24, 446, 694) << 224
            << false;
        QTest::newRow("left edge") << QRect(0, 0, 24, 24) << screen << QRect(0, 24, 24, 24)
                                   << QRect(8, 24, 446, 694) << 4 << false;
        QTest::newRow("bar at the bottom") << QRect(1000, 870, 24, 30) << screen << QRect(1000, 840, 24, 30)
                                           << QRect(789, 176, 446, 694) << 223 << true;
        QTest::newRow("screen to the left")
            << QRect(-100, 60, 24, 24) << QRect(-1280, 60, 1280, 1024) << QRect(-100, 84, 24, 24)
            << QRect(-454, 84, 446, 694) << 366 << false;
        QTest::newRow("low screen") << QRect(700, 0, 24, 24) << QRect(0, 0, 1366, 600)
                                    << QRect(700, 24, 24, 24) << QRect(489, 24, 446, 576) << 223 << false;
        QTest::newRow("no item") << QRect() << QRect(1440, 0, 800, 600) << QRect(708, 24, 24, 24)
                                 << QRect(497, 24, 446, 694) << 223 << false;
    }
    void place()
    {
        QFETCH(const QRect, item);
        QFETCH(const QRect, on);
        const PanelPlace where =
            panelPlace(item.isEmpty() ? std::nullopt : std::optional(item), on, screen, 24);
        QTEST(where.item, "rect");
        QTEST(where.panel, "panel");
        QTEST(where.upward, "upward");
        QTEST(arrowXFor(where.item, where.panel), "arrowX");
    }

    void arrowPointsAtTheItem()
    {
        const QRectF bounds(0, 0, 446, 694);
        QVERIFY(panelOutline(bounds, 223, false).contains(QPointF(223, 2)));
        QVERIFY(panelOutline(bounds, 223, true).contains(QPointF(223, 692)));
        QVERIFY(!panelOutline(bounds, 223, false).contains(QPointF(300, 2)));
        QVERIFY(panelOutline(bounds, 5000, false).contains(QPointF(426, 2))); // beside the round corner
        QVERIFY(!panelOutline(QRectF(0, 0, 24, 24), 12, false).isEmpty());
    }

    void duration()
    {
        QCOMPARE(openDuration(Qt::NoModifier), 100);
        QCOMPARE(openDuration(Qt::ShiftModifier), 1000);
        QCOMPARE(openDuration(Qt::ShiftModifier | Qt::AltModifier), 1000);
        QCOMPARE(openDuration(Qt::AltModifier), 100);
        QCOMPARE(openDuration(Qt::ShiftModifier | Qt::ControlModifier), 100);
        QVERIFY(logsOpening(Qt::ShiftModifier | Qt::AltModifier));
        QVERIFY(!logsOpening(Qt::ShiftModifier));
    }

    void order_data()
    {
        QTest::addColumn<QStringList>("packages"); // "prefix=status", in the catalogue's order
        QTest::addColumn<QStringList>("rows");

        QTest::newRow("as listed") << QStringList{u"a=2"_s, u"b"_s} << QStringList{u"a"_s, u"b"_s};
        QTest::newRow("priority, the later one first") << QStringList{u"a=4"_s, u"0xr5000=2"_s, u"b=4"_s,
            u"0xr5000=2"_s} << QStringList{u"0xr5000"_s, u"0xr5000"_s, u"a"_s, u"b"_s};
        QTest::newRow("companion above all") << QStringList{u"0xr5000=2"_s, u"0xr5700=2"_s, u"a=4"_s}
                                             << QStringList{u"0xr5700"_s, u"0xr5000"_s, u"a"_s};
        QTest::newRow("companion, other prefix")
            << QStringList{u"KM#xR57=6"_s, u"a=5"_s} << QStringList{u"KM#xR57"_s, u"a"_s};
        QTest::newRow("companion up to date") << QStringList{u"0xr5700=4"_s, u"a=4"_s} << QStringList{u"a"_s};
        QTest::newRow("companion mixed, outdated")
            << QStringList{u"0xr5700=7"_s, u"a=4"_s} << QStringList{u"a"_s};
        QTest::newRow("nothing installed")
            << QStringList{u"0xr5700=3"_s, u"a=2"_s, u"b=1"_s} << QStringList{u"a"_s, u"b"_s};
        QTest::newRow("only a priority package installed")
            << QStringList{u"0xr5700=3"_s, u"0xr5000=4"_s} << QStringList{u"0xr5000"_s};
    }
    void order()
    {
        QFETCH(const QStringList, packages);
        QList<Record> records;
        QHash<QString, Status> statuses;
        for (const QString &entry : packages) {
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
        QTEST(shown, "rows");
    }

    void buttons_data()
    {
        QTest::addColumn<Status>("status");
        QTest::addColumn<QString>("prefix");
        QTest::addColumn<RowButtons>("buttons");

        const RowButtons update{.actionTitle = u"Update"_s};
        const RowButtons upToDate{
            .actionTitle = u"Up To Date"_s, .actionEnabled = false, .actionSmall = true};
        QTest::newRow("missing data")
            << Status::MissingData << u"a"_s
            << RowButtons{.actionVisible = false, .actionEnabled = false, .removeVisible = false};
        QTest::newRow("not installed") << Status::NotInstalled << u"a"_s
                                       << RowButtons{.actionTitle = u"Install"_s, .removeVisible = false};
        QTest::newRow("not updated") << Status::NotUpdated << u"a"_s << update;
        QTest::newRow("mixed, not updated") << Status::MixedNotUpdated << u"a"_s << update;
        QTest::newRow("up to date") << Status::UpToDate << u"KM#xR57"_s << upToDate;
        QTest::newRow("in progress") << Status::InProgress << u"a"_s
                                     << RowButtons{.actionTitle = u"-"_s,
                                            .actionVisible = false,
                                            .actionEnabled = false,
                                            .removeVisible = false,
                                            .spinning = true};
        QTest::newRow("mixed") << Status::Mixed << u"0xr5000"_s << RowButtons{.actionTitle = u"Install"_s};
        QTest::newRow("the companion stays")
            << Status::Mixed << u"0xr5700"_s
            << RowButtons{.actionTitle = u"Install"_s, .removeVisible = false};
    }
    void buttons()
    {
        QFETCH(const Status, status);
        QFETCH(const QString, prefix);
        QFETCH(const RowButtons, buttons);
        QVERIFY(rowButtons(status, prefix) == buttons);
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
        QVERIFY(accountTabState({.updating = true, .signedIn = true}) == State{.spinning = true});
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
    }

    void icons_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<bool>("shown");

        const QByteArray circle = "<circle cx='4' cy='4' r='4' fill='red'/>";
        QTest::newRow("picture") << png(64, 64) << true;
        QTest::newRow("one pixel") << png(1, 1) << true;
        QTest::newRow("wide") << png(3000, 10) << true;
        QTest::newRow("nothing") << QByteArray() << false;
        QTest::newRow("text") << QByteArray("hello") << false;
        QTest::newRow("cut short") << png(64, 64).first(60) << false;
        QTest::newRow("claims to be huge") << pngThatClaims(100'000, 100'000) << false;
        QTest::newRow("claims to be large") << pngThatClaims(8000, 8000) << false;
        QTest::newRow("drawing") << svg(circle) << true;
        QTest::newRow("empty view box") << QByteArray("<svg viewBox='0 0 0 0'/>") << false;
        QTest::newRow("broken drawing") << svg(circle).chopped(3) << false;
        QTest::newRow("references") << svg("<g id='a'>" + circle + "</g><use href='#a'/>") << false;
        QTest::newRow("entities") << svg("<title>&a;</title>", "<!DOCTYPE svg [<!ENTITY a 'b'>]>") << false;
        QTest::newRow("dashes") << svg("<path d='M0 0h8' stroke='red' stroke-dasharray='1e-9'/>") << false;
        QTest::newRow("styled dashes") << svg("<path d='M0 0h8' style='stroke-dasharray:1e-9'/>") << false;
        QTest::newRow("too many shapes") << svg(circle.repeated(3000)) << false;
        QTest::newRow("zipped") << QByteArray("\x1f\x8b\x08\x00", 4) << false;
    }
    void icons()
    {
        QFETCH(const QByteArray, data);
        const QImage icon = decodedIcon(data, 96);
        QTEST(!icon.isNull(), "shown");
        if (!icon.isNull()) {
            QCOMPARE(icon.size(), QSize(96, 96));
            QCOMPARE(icon.pixelColor(48, 48), QColor(Qt::red));
        }
    }
};

QTEST_GUILESS_MAIN(TestPanelLayout)
#include "test_panel_layout.moc"
