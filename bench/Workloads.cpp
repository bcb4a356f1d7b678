// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "Workloads.h"

#include "catalogue/StatusRun.h"
#include "foundation/Tasks.h"
#include "support/SampleBundles.h"

#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QThread>

#include <plist/plist.h>

#include <array>
#include <cstdlib>
#include <span>

namespace brevok::bench {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array hostVersions{75, 80, 140, 150, 160, 163, 170, 180, 190, 200};

Record definition(int number, int hostVersion, int edition = 2)
{
    return {
        {PluginKeys::name, u"Plugin %1"_s.arg(number)},
        {PluginKeys::prefix, u"0x%1"_s.arg(number, 6, 16, QChar(u'0'))},
        {PluginKeys::version, u"%1.%2.0"_s.arg(edition).arg(number % 17)},
        {PluginKeys::hostVersion, hostVersion},
        {PluginKeys::size, 1000000 + number},
        {PluginKeys::link, u"https://localhost/archives/%1/Plugin%2.zip"_s.arg(hostVersion).arg(number)},
        {PluginKeys::published, u"2026-03-14T09:26:53Z"_s},
        {PluginKeys::platform, PluginKeys::mac},
    };
}

} // namespace

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

QByteArray pluginList(int count, int edition)
{
    QJsonArray list;
    for (int i = 0; i < count; ++i) {
        list.append(
            definition(i / 10, hostVersions.at(static_cast<size_t>(i) % hostVersions.size()), edition));
    }
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}

ListWorkload::ListWorkload() = default;

void ListWorkload::startAnew()
{
    ++m_runs;
    load();
}

qsizetype ListWorkload::run(const QByteArray &list)
{
    startAnew();
    return runAgain(list);
}

qsizetype ListWorkload::load()
{
    m_plugins.reset();
    m_state.emplace(m_folder.filePath(u"store-%1.sqlite"_s.arg(m_runs)));
    m_plugins.emplace(*m_state, m_service, m_alerts);
    return m_plugins->pluginIndex().size();
}

qsizetype ListWorkload::runAgain(const QByteArray &list)
{
    QEventLoop loop;
    m_plugins->checkForUpdates([&](const auto &) {
        m_state->commit({}, &loop, [&loop](const auto &error) { loop.exit(error ? 1 : 0); });
    });
    m_service.answerList({.status = 200, .body = list, .headers = {}, .error = {}});
    return loop.exec() == 0 ? m_plugins->pluginIndex().size() : 0;
}

StatusWorkload::StatusWorkload(int packageCount, size_t targetCount)
{
    QJsonArray builds;
    QJsonArray products;
    for (int package = 0; package < packageCount; ++package) {
        for (const int hostVersion : hostVersions) {
            builds.append(definition(package, hostVersion));
        }
        products.append(Record{{PackageKeys::name, u"Package %1"_s.arg(package)},
            {PackageKeys::prefix, u"0x%1"_s.arg(package, 6, 16, QChar(u'0'))},
            {PackageKeys::version, u"2.0"_s}, {PackageKeys::published, u"2026"_s},
            {PackageKeys::platform, PluginKeys::mac}});
    }
    m_scratch.store.setValue(u"OrlecTargetsGathered"_s, true);
    m_alerts.emplace(m_presenter, m_panel);
    m_targets.emplace(m_scratch.store, m_search);
    for (const int hostVersion : std::span(hostVersions).last(targetCount)) {
        const QString target = m_folder.filePath(u"%1/Plug-Ins/"_s.arg(hostVersion));
        m_targets->insertTarget(target, u"Adobe InDesign"_s, QString::number(hostVersion));
        for (int package = 0; package < packageCount; ++package) {
            const QString bundle = testing::writeInstalledPlugin(target, u"Plugin %1"_s.arg(package),
                u"2.%1.0"_s.arg(package % 17), u"%1.%2"_s.arg(hostVersion / 10).arg(hostVersion % 10));
            m_propertyLists.append(bundle + u"/Contents/Info.plist"_s);
        }
    }
    m_plugins.emplace(m_scratch.store, m_service, *m_alerts);
    m_plugins->updateWithArray(builds);
    makePackages();
    m_packages->updateWithArray(products);
    // What was changed just now is read again each time.
    constexpr unsigned long settlingMs = 2100;
    QThread::msleep(settlingMs);
    run();
    run();
}

void StatusWorkload::makePackages()
{
    m_packages.emplace(BrevokPackages::Collaborators{
        m_scratch.store, m_service, *m_alerts, *m_plugins, *m_targets, m_folder.path()});
}

qsizetype StatusWorkload::runFresh()
{
    makePackages();
    return run();
}

qsizetype StatusWorkload::runFirst() const
{
    StatusInput input{.prefixes = {}, .builds = {}, .validTargets = m_targets->validTargets()};
    for (const Record &package : m_packages->packageRecords()) {
        const QString prefix = package.value(PackageKeys::prefix).toString();
        input.prefixes.append(prefix);
        input.builds.insert(prefix, statusBuilds(m_plugins->pluginIndex().value(prefix)));
    }
    const StatusResult result = calculatedStatuses(input);
    return std::count(result.statuses.cbegin(), result.statuses.cend(), PackageStatus::UpToDate);
}

qsizetype StatusWorkload::run()
{
    QEventLoop loop;
    QObject::connect(&*m_packages, &BrevokPackages::statusesSettled, &loop, &QEventLoop::quit);
    m_packages->calculatePackageStatuses();
    loop.exec();
    return std::count(
        m_packages->packagesStatus().cbegin(), m_packages->packagesStatus().cend(), PackageStatus::UpToDate);
}

qsizetype StatusWorkload::readPropertyLists() const
{
    qsizetype count = 0;
    for (const QString &path : m_propertyLists) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            continue;
        }
        const QByteArray data = file.readAll();
        plist_t list = nullptr;
        plist_from_xml(data.constData(), static_cast<uint32_t>(data.size()), &list);
        count += list != nullptr && plist_get_node_type(list) == PLIST_DICT ? 1 : 0;
        plist_free(list);
    }
    return count;
}

} // namespace brevok::bench
