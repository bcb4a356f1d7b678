// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "InstallWorkload.h"

#include "Workloads.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QJsonDocument>

namespace brevok::bench {

using namespace Qt::StringLiterals;
using testing::InstallRig;

namespace {

QString tiny(int number)
{
    return u"Tiny %1"_s.arg(number);
}

} // namespace

InstallWorkload::InstallWorkload(int definitions, int plugins)
    : m_target(m_rig.addTarget(u"InDesign 2019"_s, u"140"_s))
    , m_plugins(plugins)
{
    QJsonArray builds = QJsonDocument::fromJson(pluginList(definitions - plugins)).array();
    QJsonArray products;
    QString last;
    const auto addProduct = [&](const QString &name, const QString &prefix) {
        products.append(
            Record{{PackageKeys::name, name}, {PackageKeys::prefix, prefix}, {PackageKeys::version, u"2.0"_s},
                {PackageKeys::published, u"2026"_s}, {PackageKeys::platform, PluginKeys::mac}});
    };
    for (const QJsonValue build : std::as_const(builds)) {
        if (const QString prefix = build[PluginKeys::prefix].toString(); prefix != last) {
            addProduct(build[PluginKeys::name].toString(), prefix);
            last = prefix;
        }
    }
    for (int i = 0; i < plugins; ++i) {
        builds.append(InstallRig::build(tiny(i), tiny(i), 140));
        addProduct(tiny(i), tiny(i));
    }
    m_rig.plugins.updateWithArray(builds);
    m_rig.packages.updateWithArray(products);
    waitUntilSettled(0);
}

qsizetype InstallWorkload::install()
{
    for (int i = 0; i < m_plugins; ++i) {
        m_rig.flow.installWithPrefix(tiny(i), false, [this](const auto &) { ++m_ended; });
    }
    waitUntilSettled(m_plugins);
    return QDir(m_target + u"/Tolvane"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

void InstallWorkload::remove()
{
    for (int i = 0; i < m_plugins; ++i) {
        m_rig.flow.uninstallWithPrefix(tiny(i), [this](const auto &) { ++m_ended; });
    }
    waitUntilSettled(m_plugins);
    QDir(m_rig.dataFolder() + u"/140"_s).removeRecursively();
}

bool InstallWorkload::refresh(const QByteArray &list)
{
    QEventLoop loop;
    m_rig.service.lists.clear();
    m_rig.plugins.checkForUpdates([&](const auto &) {
        m_rig.state.commit({}, &loop, [&loop](const auto &error) { loop.exit(error ? 1 : 0); });
    });
    m_rig.service.lists.takeFirst().handler({.status = 200, .body = list, .headers = {}, .error = {}});
    const bool stored = loop.exec() == 0;
    waitUntilSettled(0);
    return stored;
}

void InstallWorkload::waitUntilSettled(int operations)
{
    const BrevokPackages &packages = m_rig.packages;
    while (m_ended < operations || packages.updating() || packages.needUpdate()) {
        QCoreApplication::processEvents(
            m_rig.service.downloads.isEmpty() ? QEventLoop::WaitForMoreEvents : QEventLoop::AllEvents);
        if (!m_rig.service.downloads.isEmpty()) { // one a turn, as they would come
            const QString name = m_rig.service.downloads.constFirst().url.path().section(u'/', -1);
            m_rig.answerDownload(InstallRig::archiveOf(name.section(u'-', 0, 0), 140));
        }
    }
    m_ended = 0;
}

} // namespace brevok::bench
