// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "InstallRig.h"
#include "support/FailingDisk.h"

#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

class InstallCostsTest : public QObject {
    Q_OBJECT

public:
    FailingDisk disk;

private Q_SLOTS:
    void whatIsWrittenDoesNotGrowWithTheCatalogue();
};

namespace {

struct Cost {
    int writes = -1;
    qint64 bytes = -1;
};

bool flush(InstallRig &rig)
{
    bool stored = false;
    rig.state.commit({}, &rig.flow, [&stored](const auto &error) { stored = !error; });
    return QTest::qWaitFor([&stored] { return stored; }, 30000);
}

// What installing one plug-in writes to the state beside @p count definitions.
Cost costBeside(int count)
{
    InstallRig rig;
    rig.addTarget(u"InDesign 2019"_s, u"140"_s);
    QJsonArray builds{InstallRig::build(u"P"_s, u"Plug"_s, 140)};
    while (builds.size() < count) {
        builds.append(
            InstallRig::build(u"P%1"_s.arg(builds.size() / 10), u"N%1"_s.arg(builds.size()), 150, u"1"_s, 1));
    }
    rig.plugins.updateWithArray(builds);
    rig.addPackage(u"Pack"_s, u"P"_s);
    int ended = 0;
    const bool filled = flush(rig);
    FailingDisk::heal();
    rig.flow.installWithPrefix(u"P"_s, false, [&ended](const auto &) { ++ended; });
    const bool asked = QTest::qWaitFor([&rig] { return rig.service.downloads.size() == 1; }, 30000);
    if (!filled || !asked || !flush(rig)) {
        return {};
    }
    rig.answerDownload(InstallRig::archiveOf(u"Plug"_s, 140));
    const bool installed = QTest::qWaitFor([&ended] { return ended == 1; }, 30000) && flush(rig);
    return installed ? Cost{FailingDisk::writes(), FailingDisk::bytes()} : Cost();
}

} // namespace

void InstallCostsTest::whatIsWrittenDoesNotGrowWithTheCatalogue()
{
    const Cost few = costBeside(100);
    const Cost many = costBeside(20000);
    QVERIFY(few.writes > 0 && few.bytes > 0 && many.writes > 0);
    QVERIFY2(many.bytes <= few.bytes * 13 / 10, qPrintable(u"%1 %2"_s.arg(few.bytes).arg(many.bytes)));
    QVERIFY2(many.writes <= few.writes * 13 / 10, qPrintable(u"%1 %2"_s.arg(few.writes).arg(many.writes)));
}

QTEST_GUILESS_MAIN(InstallCostsTest)
#include "test_install_costs.moc"
