// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/ConvergeNotices.h"

#include "catalogue/BrevokPackages.h"
#include "foundation/Settings.h"
#include "foundation/Texts.h"
#include "install/Converger.h"
#include "platform/SettingsStore.h"
#include "platform/StateStore.h"

#include <QJsonArray>

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

const QString toldKey = u"ConvergeToldWaiting"_s; // names of packages

// A notice is small.
QString someOf(const QStringList &names)
{
    constexpr qsizetype most = 5;
    const qsizetype shown = std::min(most, names.size());
    return andMore(names.first(shown).join(u", "_s), names.size() - shown);
}

QString titleFor(const ConvergeOutcome &outcome, const QStringList &waiting)
{
    if (!outcome.changed.isEmpty()) {
        return Texts::tr("Your Plug-Ins were changed");
    }
    return waiting.size() == 1 ? Texts::tr("Plug-In update available!")
                               : Texts::tr("Plug-In updates available!");
}

} // namespace

std::optional<UserNotification> noticeOf(
    const ConvergeOutcome &outcome, const QStringList &waiting, const QSet<QString> &told)
{
    const bool newWaits = std::any_of(
        waiting.cbegin(), waiting.cend(), [&](const QString &name) { return !told.contains(name); });
    if (outcome.changed.isEmpty() && !newWaits) {
        return std::nullopt;
    }
    QStringList lines;
    const QStringList installed = outcome.packagesChanged(endName(PluginOutcome::End::Installed));
    const QStringList removed = outcome.packagesChanged(endName(PluginOutcome::End::Removed));
    if (!installed.isEmpty()) {
        lines.append(Texts::tr("Installed: %1").arg(someOf(installed)));
    }
    if (!removed.isEmpty()) {
        lines.append(Texts::tr("Removed: %1").arg(someOf(removed)));
    }
    if (!waiting.isEmpty()) {
        lines.append(Texts::tr("Waiting for an update: %1").arg(someOf(waiting)));
    }
    UserNotification notice{.title = titleFor(outcome, waiting), .informativeText = lines.join(u'\n')};
    notice.actions.append({ActionNames::open, Texts::tr("Open")});
    if (!waiting.isEmpty()) {
        notice.actions.append({ActionNames::update, Texts::tr("Update")});
    }
    return notice;
}

ConvergeNotices::ConvergeNotices(const Collaborators &collaborators, QObject *parent)
    : QObject(parent)
    , m_with(collaborators)
{
    connect(&m_with.converger, &Converger::converged, this, &ConvergeNotices::tell);
    connect(&m_with.state, &StateStore::becameReadable, this, &ConvergeNotices::load);
    load();
}

ConvergeNotices::~ConvergeNotices() = default;

void ConvergeNotices::load()
{
    m_told.clear();
    const QJsonArray names = m_with.state.value(toldKey).toArray();
    for (const QJsonValue name : names) {
        m_told.insert(name.toString());
    }
}

void ConvergeNotices::tell(const ConvergeOutcome &outcome)
{
    if (!m_with.settings.boolValue(SettingKeys::showNotifications)) {
        return;
    }
    QStringList waiting;
    const QList<Record> packages = m_with.packages.waitingPackages();
    for (const Record &package : packages) {
        waiting.append(package.value(PackageKeys::name).toString());
    }
    if (const auto notice = noticeOf(outcome, waiting, m_told)) {
        m_with.center.deliver(*notice);
    }
    if (const QSet<QString> now(waiting.cbegin(), waiting.cend()); now != m_told) {
        m_told = now;
        m_with.state.setValue(toldKey, QJsonArray::fromStringList(waiting));
    }
}

} // namespace brevok
