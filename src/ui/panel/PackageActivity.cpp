// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/PackageActivity.h"

#include "alerts/BrevokAlertQueue.h"
#include "catalogue/BrevokPackages.h"
#include "foundation/Texts.h"
#include "install/InstallFlow.h"
#include "install/UpdateRun.h"

#include <QPointer>

namespace brevok {

PackageActivity::PackageActivity(Collaborators collaborators, QObject *parent)
    : QObject(parent)
    , m_with(collaborators)
{
    connect(&m_with.flow, &InstallFlow::progress, this, &PackageActivity::noteProgress);
    connect(&m_with.packages, &BrevokPackages::statusesSettled, this, &PackageActivity::forgetEnded);
    connect(&m_with.updates, &UpdateRun::packageBegins, this, &PackageActivity::begin);
    connect(&m_with.updates, &UpdateRun::packageEnded, this, &PackageActivity::end);
}

PackageActivity::~PackageActivity() = default;

void PackageActivity::install(const PackageRow &row)
{
    const QString prefix = row.prefix();
    begin(prefix);
    m_with.flow.installWithPackage(
        row.package, prefix, false, [self = QPointer(this), prefix](const InstallOutcome &) {
            if (self) {
                self->end(prefix);
            }
        });
}

void PackageActivity::remove(const PackageRow &row)
{
    const QString prefix = row.prefix();
    begin(prefix);
    m_with.flow.uninstallWithPackage(
        row.package, prefix, [self = QPointer(this), prefix](const InstallOutcome &) {
            if (self) {
                self->end(prefix);
            }
        });
}

void PackageActivity::askToRemove(const PackageRow &row)
{
    std::unique_ptr<BrevokAlert> alert = BrevokAlert::create(m_with.alerts.presenter());
    alert->content = {
        .messageText = Texts::tr("Remove %1?").arg(row.name()),
        .informativeText = Texts::tr("It is removed from all your applications."),
        .style = AlertStyle::Informational,
        .icon = {},
        // A second Return is as quickly pressed as the first.
        .buttons = {{.title = Texts::tr("Remove")},
            {.title = Texts::tr("Cancel"), .key = AlertKey::ReturnAndEscape}},
        .accessory = {},
    };
    m_with.alerts.show(std::move(alert), this, [this, row](int answer) {
        if (answer == alertFirstButton) {
            remove(row);
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
    if (m_with.packages.updating()) {
        m_ending.insert(prefix);
    }
    Q_EMIT activityChanged();
}

void PackageActivity::forgetEnded()
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
            && m_with.packages.packagesStatus().value(entry.key(), PackageStatus::MissingData)
            != PackageStatus::InProgress;
    });
}

void PackageActivity::noteProgress(const QString &prefix, const QString &plugin, qint64 done, qint64 expected)
{
    m_downloads[prefix][{plugin, std::max(expected, qint64(0))}] = done;
    Q_EMIT progressChanged(prefix);
}

} // namespace brevok
