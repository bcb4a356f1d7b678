// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/PackageActivity.h"

#include "catalogue/BrevokPackages.h"
#include "install/InstallFlow.h"

#include <QPointer>

namespace brevok {

PackageActivity::PackageActivity(InstallFlow &flow, BrevokPackages &packages, QObject *parent)
    : QObject(parent)
    , m_flow(flow)
    , m_packages(packages)
{
    connect(&flow, &InstallFlow::progress, this, &PackageActivity::takeProgress);
    connect(&packages, &BrevokPackages::statusesSettled, this, &PackageActivity::settle);
}

PackageActivity::~PackageActivity() = default;

void PackageActivity::install(const Record &package, const QString &prefix)
{
    begin(prefix);
    m_flow.installWithPackage(
        package, prefix, false, [self = QPointer(this), prefix](const InstallOutcome &) {
            if (self) {
                self->end(prefix);
            }
        });
}

void PackageActivity::remove(const Record &package, const QString &prefix)
{
    begin(prefix);
    m_flow.uninstallWithPackage(package, prefix, [self = QPointer(this), prefix](const InstallOutcome &) {
        if (self) {
            self->end(prefix);
        }
    });
}

void PackageActivity::begin(const QString &prefix)
{
    ++m_running[prefix];
    m_ending.remove(prefix);
    Q_EMIT activityChanged();
}

void PackageActivity::end(const QString &prefix)
{
    if (--m_running[prefix] > 0) {
        return;
    }
    m_running.remove(prefix);
    m_downloads.remove(prefix);
    // A calculation under way may have begun before the end; the last one tells.
    if (m_packages.updating()) {
        m_ending.insert(prefix);
    }
    Q_EMIT activityChanged();
}

void PackageActivity::settle()
{
    if (!m_ending.isEmpty()) {
        m_ending.clear();
        Q_EMIT activityChanged();
    }
}

PackageStatus PackageActivity::shownStatus(const QString &prefix, PackageStatus status) const
{
    return m_running.contains(prefix) || m_ending.contains(prefix) ? PackageStatus::InProgress : status;
}

std::optional<DownloadProgress> PackageActivity::progress(const QString &prefix) const
{
    const auto archives = m_downloads.constFind(prefix);
    if (archives == m_downloads.constEnd()) {
        return std::nullopt;
    }
    DownloadProgress sum;
    bool allKnown = true;
    for (auto archive = archives->constBegin(); archive != archives->constEnd(); ++archive) {
        sum.done += archive.value();
        sum.expected += archive.key().second;
        allKnown = allKnown && archive.key().second > 0;
    }
    if (!allKnown) {
        sum.expected = 0;
    }
    return sum;
}

void PackageActivity::statusesChanged()
{
    m_downloads.removeIf([this](const auto &entry) {
        return !m_running.contains(entry.key())
            && m_packages.packagesStatus().value(entry.key(), PackageStatus::MissingData)
            != PackageStatus::InProgress;
    });
}

void PackageActivity::takeProgress(const QString &prefix, const QString &plugin, qint64 done, qint64 expected)
{
    m_downloads[prefix][{plugin, std::max(expected, qint64(0))}] = done;
    Q_EMIT progressChanged(prefix);
}

} // namespace brevok
