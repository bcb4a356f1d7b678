// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// What the installer front tells the user of a target application that is running.

#include "install/BrevokAppInstaller.h"

#include "alerts/BrevokAlertQueue.h"
#include "foundation/Texts.h"
#include "install/RunningTargets.h"
#include "platform/StateStore.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 quietMilliseconds = 60000;
const QString dateKey = u"OrlecInstallNotificationDate"_s; // an entry for every application

// The text's key lacks the period that its English default has.
QString restartText(const QString &name)
{
    constexpr auto *key = QT_TRANSLATE_NOOP("Brevok",
        "To take advantage of newly installed Plug-Ins, restart %1.\n\nDo you want to quit %1 now or do it "
        "yourself later?");
    QString text = Texts::tr(key);
    if (text == QString::fromUtf8(key)) {
        text += u'.';
    }
    return text.arg(name);
}

} // namespace

void BrevokAppInstaller::loadNotificationDates()
{
    const StateEntries stored = m_with.state.entries(dateKey);
    for (auto entry = stored.cbegin(); entry != stored.cend(); ++entry) {
        m_notificationDates.insert(entry.key(), StateStore::dateOf(*entry));
    }
}

std::optional<RunningApplication> BrevokAppInstaller::runningUnder(const QString &folder) const
{
    if (folder.isEmpty()) {
        return std::nullopt;
    }
    return getRunningApp(m_with.applications.list(), {u"InDesign"_s, u"InCopy"_s}, folder);
}

bool BrevokAppInstaller::noteRunning(
    Action action, const RunningApplication &application, const QString &folder)
{
    return onMainNow([this, action, application, folder] {
        const QDateTime now = m_with.now();
        const QString marketingName = getVersionString(application.bundleVersion);
        QDateTime &last = m_notificationDates[folder];
        if ((!last.isValid() || last.msecsTo(now) > quietMilliseconds) && !application.localizedName.isEmpty()
            && !marketingName.isEmpty()) {
            // Later, so that the work does not wait for the user's answer.
            onMain(this, [this, action, application, marketingName] {
                showRunning(action, application, marketingName);
            });
        }
        last = now;
        m_with.state.commit({{dateKey, folder, StateStore::dateRecord(now)}});
    });
}

void BrevokAppInstaller::showRunning(
    Action action, const RunningApplication &application, const QString &marketingName)
{
    const std::unique_ptr<BrevokAlert> alert = BrevokAlert::create(m_with.alerts.presenter());
    if (!alert) {
        return;
    }
    const QString name = application.localizedName;
    const AlertButton quit{.title = Texts::tr("Quit %1").arg(name)};
    const AlertButton goOn{.title = Texts::tr("Continue")};
    const bool installing = action == Action::Install;
    AlertContent &content = alert->content;
    content.messageText = Texts::tr("Adobe %1 %2 is running.").arg(name, marketingName);
    if (installing) {
        content.style = AlertStyle::Informational;
        content.informativeText = restartText(name);
        content.buttons = {goOn, quit};
    } else {
        content.informativeText =
            Texts::tr("Removing Plug-Ins from running Adobe %1 can lead to unexpected behaviour, you should "
                      "quit %1 before proceeding.")
                .arg(name);
        content.buttons = {quit, goOn};
    }
    if (m_with.alerts.runModal(*alert) == (installing ? alertSecondButton : alertFirstButton)) {
        m_with.applications.terminate(application);
    }
}

} // namespace brevok
