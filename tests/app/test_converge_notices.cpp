// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/ConvergeNotices.h"
#include "support/InRow.h"

#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::InRow;

namespace {

ConvergeOutcome outcomeOf(const QStringList &installed, const QStringList &removed = {})
{
    using End = PluginOutcome::End;
    ConvergeOutcome outcome;
    for (const QString &name : installed) {
        outcome.add(name, name, {.entries = {{.end = End::Installed}, {.end = End::Installed}}});
    }
    for (const QString &name : removed) {
        outcome.add(name, name, {.entries = {{.end = End::Removed}}});
    }
    return outcome;
}

} // namespace

class ConvergeNoticesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void whatIsNewIsSaid()
    {
        ConvergeOutcome troubled;
        troubled.addFailure(u"no"_s);
        // Title, text and buttons; nothing: no notice.
        const QList<std::tuple<const char *, ConvergeOutcome, QStringList, QSet<QString>, QString>> rows{
            {"nothing", {}, {}, {}, {}},
            {"failures are not for the person", troubled, {}, {}, {}},
            {"changes", outcomeOf({u"A"_s, u"B"_s}, {u"C"_s}), {}, {},
                u"Your Plug-Ins were changed|Installed: A, B/Removed: C|open"_s},
            {"an update waits", {}, {u"A"_s}, {},
                u"Plug-In update available!|Waiting for an update: A|open update"_s},
            {"the same waits still", {}, {u"A"_s}, {u"A"_s}, {}},
            {"fewer wait", {}, {u"A"_s}, {u"A"_s, u"B"_s}, {}},
            {"another waits too", {}, {u"A"_s, u"B"_s}, {u"A"_s},
                u"Plug-In updates available!|Waiting for an update: A, B|open update"_s},
            {"changes, and the same waits", outcomeOf({u"B"_s}), {u"A"_s}, {u"A"_s},
                u"Your Plug-Ins were changed|Installed: B/Waiting for an update: A|open update"_s},
            {"many", outcomeOf({u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s, u"6"_s, u"7"_s}), {}, {},
                u"Your Plug-Ins were changed|Installed: 1, 2, 3, 4, 5 (and 2 more)|open"_s},
        };
        for (const auto &[name, outcome, waiting, told, expected] : rows) {
            const InRow in(name);
            const auto notice = noticeOf(outcome, waiting, told);
            QString said;
            if (notice) {
                QStringList buttons;
                for (const UserNotificationAction &action : notice->actions) {
                    buttons.append(action.name);
                }
                QString text = notice->informativeText;
                said = u"%1|%2|%3"_s.arg(notice->title, text.replace(u'\n', u'/'), buttons.join(u' '));
            }
            QCOMPARE(said, expected);
        }
    }
};

QTEST_GUILESS_MAIN(ConvergeNoticesTest)
#include "test_converge_notices.moc"
