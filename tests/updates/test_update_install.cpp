// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"
#include "support/FolderTest.h"
#include "support/InRow.h"
#include "support/PackageKitPlayer.h"
#include "support/SampleBundles.h"
#include "UpdaterStage.h"

#include <QLocale>
#include <QSignalSpy>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Phase = UpdateState::Phase;
using Act = PackageKitPlayer::Act;
using Fault = Response::Fault;

namespace {

constexpr int patient = 30000;
const QString packagePath = UpdaterStage::packagePath();

} // namespace

class UpdateInstallTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void installs()
    {
        PackageKitPlayer system(m_bus.address(), Act::Wait);
        UpdaterStage stage;
        stage.serveGoodPackage();
        QSignalSpy wanted(stage.updater.get(), &BrevokSelfUpdater::windowWanted);

        stage.updater->checkForUpdatesInBackground();
        QTRY_COMPARE_WITH_TIMEOUT(stage.phase(), Phase::Offered, patient);
        QCOMPARE(wanted.size(), 1);
        QCOMPARE(stage.updater->state().version, u"101"_s);
        QVERIFY(LogCapture::contains(u"Version 101 of Tolvane Brevok is available."_s));
        QVERIFY(stage.server.requests(packagePath).isEmpty());
        stage.updater->checkForUpdates();
        QCOMPARE(wanted.size(), 2);
        QCOMPARE(stage.phase(), Phase::Offered);

        stage.updater->installUpdate();
        stage.updater->installUpdate();
        QTRY_COMPARE_WITH_TIMEOUT(system.installed, stage.package, patient);
        QCOMPARE(stage.server.requests(packagePath).size(), 1);
        QVERIFY(stage.server.requests(packagePath).constFirst().header("Cookie").isNull());
        QCOMPARE(system.paths, QStringList{stage.folder() + u"/tolvane-brevok-update.deb"_s});
        QCOMPARE(system.flags, 0ULL);
        QVERIFY(system.hints.contains(u"interactive=true"_s));
        QCOMPARE(system.permissions & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser),
            QFile::Permissions(QFile::ReadOwner));
        QCOMPARE(modeOf(stage.folder()), mode_t(0700));
        system.tellPercentage(40);
        QTRY_COMPARE_WITH_TIMEOUT(stage.updater->state().percent, 40, patient);
        system.tellPercentage(101);
        QTRY_COMPARE_WITH_TIMEOUT(stage.updater->state().percent, -1, patient);
        stage.updater->dismiss();
        QCOMPARE(stage.phase(), Phase::Installing);
        system.finish(1);
        QTRY_COMPARE_WITH_TIMEOUT(stage.phase(), Phase::Installed, patient);
        QCOMPARE(stage.leftFiles(), QStringList());

        QCOMPARE(stage.check(), Phase::UpToDate);
    }

    void refusedPackages()
    {
        const QByteArray package = samplePackage();
        QByteArray flipped = package;
        flipped[package.size() / 2] = static_cast<char>(flipped[package.size() / 2] ^ 1);
        const QByteArray older = samplePackage("100-1");
        const QByteArray longer = samplePackage("101.5");
        const QByteArray demo = samplePackage("101-1", "tolvane-brevok-demo");
        const QByteArray none(300000, 'x');
        const QString removed = u" It was not installed, and the file was removed."_s;
        const QString wrongSignature =
            u"The downloaded update is not signed by the maker of Tolvane Brevok."_s + removed;
        const QString otherPackage =
            u"The downloaded update is not version 101 of Tolvane Brevok."_s + removed;
        const QString size = QLocale().toString(package.size());
        const QList<std::tuple<const char *, Response, QByteArray, QString>> rows{
            {"one bit of the package is another", Response::ok(flipped), package, wrongSignature},
            {"somebody signed something else", Response::ok(package), flipped, wrongSignature},
            {"somebody else signed it", Response::ok(package), {}, wrongSignature},
            {"an older version", Response::ok(older), older, otherPackage},
            {"a version that begins like it", Response::ok(longer), longer, otherPackage},
            {"another package of the maker's", Response::ok(demo), demo, otherPackage},
            {"no package", Response::ok(none), none, otherPackage},
            {"one byte is missing", Response::ok(package.chopped(1)), package,
                u"The download has %1 of the expected %2 bytes."_s.arg(
                    QLocale().toString(package.size() - 1), size)},
            {"one byte too many", Response::ok(package + '\n'), package,
                u"The download is longer than the expected %1 bytes."_s.arg(size)},
            {"cut off", Response{.body = package, .fault = Fault::Reset, .faultAfter = 100000}, package, {}},
            {"leads away from TLS", Response::redirect("http://localhost:1/brevok.deb"), package, {}},
        };
        for (const auto &[name, response, signedBytes, text] : rows) {
            const InRow in(name);
            PackageKitPlayer system(m_bus.address(), Act::Install);
            UpdaterStage stage;
            const QByteArray signature =
                signedBytes.isEmpty() ? SampleMaker().sign(stage.package) : stage.maker.sign(signedBytes);
            const QByteArray &announced = response.body == signedBytes ? signedBytes : stage.package;
            stage.servePackage({}, signature, announced.size());
            stage.server.on(packagePath, response);
            QCOMPARE(stage.check(), Phase::Offered);
            QCOMPARE(stage.install(), Phase::Failed);
            QVERIFY(!stage.error().isEmpty());
            QVERIFY2(text.isEmpty() || stage.error() == text, qPrintable(stage.error()));
            QTRY_COMPARE_WITH_TIMEOUT(stage.leftFiles(), QStringList(), patient);
            QCOMPARE(system.transactions, 0);

            // Once more, with the right package.
            stage.serveGoodPackage();
            QCOMPARE(stage.check(), Phase::Offered);
            QCOMPARE(stage.install(), Phase::Installed);
            QCOMPARE(system.installed, stage.package);
        }
    }

    void failingSystems()
    {
        const QString unavailable = u"The system's software service (PackageKit) is not available."_s;
        const QString refused = u"The system's software service did not install the package: %1"_s;
        const QString ended = u"The system's software service stopped before the package was installed."_s;
        const QList<std::tuple<const char *, std::optional<Act>, QString>> rows{
            {"none", std::optional<Act>(), unavailable},
            {"no transaction", Act::NoTransaction, unavailable},
            {"refuses", Act::Refuse, refused.arg(u"The disk is full."_s)},
            {"refuses the call", Act::RefuseCall, refused.arg(u"not for you"_s)},
            {"cancelled", Act::Cancel, u"The installation was cancelled."_s},
            {"dies", Act::Die, ended},
            {"forgets", Act::Vanish, ended},
        };
        for (const auto &[name, act, text] : rows) {
            const InRow in(name);
            auto system = act ? std::make_unique<PackageKitPlayer>(m_bus.address(), *act) : nullptr;
            UpdaterStage stage;
            stage.serveGoodPackage();
            QCOMPARE(stage.check(), Phase::Offered);
            QCOMPARE(stage.install(), Phase::Failed);
            QCOMPARE(stage.error(), text);
            QTRY_COMPARE_WITH_TIMEOUT(stage.leftFiles(), QStringList(), patient);

            // The user tries again, and by now the system can.
            system.reset();
            system = std::make_unique<PackageKitPlayer>(m_bus.address(), Act::Install);
            QVERIFY(stage.updater->state().hasOffer());
            QCOMPARE(stage.install(), Phase::Installed);
        }
    }

    void dismissing()
    {
        PackageKitPlayer system(m_bus.address(), Act::Install);
        UpdaterStage stage;
        stage.serveGoodPackage();
        stage.server.on(
            packagePath, Response{.body = stage.package, .fault = Fault::Stall, .faultAfter = 100000});
        stage.updater->checkForUpdates();
        stage.updater->dismiss();
        QCOMPARE(stage.phase(), Phase::Idle);

        QCOMPARE(stage.check(), Phase::Offered);
        stage.updater->installUpdate();
        QTRY_VERIFY_WITH_TIMEOUT(stage.updater->state().done > 0, patient);
        QVERIFY(!stage.leftFiles().isEmpty());
        stage.updater->dismiss();
        QCOMPARE(stage.phase(), Phase::Idle);
        QTRY_COMPARE_WITH_TIMEOUT(stage.leftFiles(), QStringList(), patient);

        // Gone in the middle.
        stage.updater->checkForUpdates();
        stage.updater = stage.makeUpdater();
        connect(stage.updater.get(), &BrevokSelfUpdater::stateChanged, this, [&stage] {
            if (stage.phase() == Phase::Verifying) {
                stage.updater->dismiss();
            }
        });
        stage.serveGoodPackage();
        QCOMPARE(stage.check(), Phase::Offered);
        stage.updater->installUpdate();
        QTRY_COMPARE_WITH_TIMEOUT(stage.phase(), Phase::Idle, patient);
        QVERIFY(finishBackgroundWork(patient));
        QCoreApplication::processEvents();
        QTRY_COMPARE_WITH_TIMEOUT(stage.leftFiles(), QStringList(), patient);
        QCOMPARE(system.transactions, 0);
    }

private:
    PrivateSystemBus m_bus;
};

QTEST_GUILESS_MAIN(UpdateInstallTest)
#include "test_update_install.moc"
