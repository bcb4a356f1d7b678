// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/RunningTargetAlerts.h"

#include "alerts/BrevokAlertQueue.h"
#include "foundation/Texts.h"
#include "platform/StateStore.h"
#include "targets/MarketingNames.h"

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

RunningTargetAlerts::RunningTargetAlerts(RunningApplications &applications, StateStore &state,
    BrevokAlertQueue &alerts, std::function<QDateTime()> now, QObject *parent)
    : QObject(parent)
    , m_applications(applications)
    , m_state(state)
    , m_alerts(alerts)
    , m_now(std::move(now))
{
    connect(&m_state, &StateStore::becameReadable, this, &RunningTargetAlerts::loadDates);
    loadDates();
}

RunningTargetAlerts::~RunningTargetAlerts() = default;

void RunningTargetAlerts::loadDates()
{
    const StateEntries stored = m_state.entries(dateKey);
    for (auto entry = stored.cbegin(); entry != stored.cend(); ++entry) {
        m_dates.insert(entry.key(), StateStore::dateOf(*entry));
    }
}

void RunningTargetAlerts::note(
    Occasion occasion, const RunningApplication &application, const QString &folder)
{
    const QDateTime now = m_now();
    const QString marketingName = getVersionString(application.bundleVersion);
    QDateTime &last = m_dates[folder];
    if ((!last.isValid() || last.msecsTo(now) > quietMilliseconds) && !application.localizedName.isEmpty()
        && !marketingName.isEmpty()) {
        show(occasion, application, marketingName);
    }
    last = now;
    m_state.commit({{dateKey, folder, StateStore::dateRecord(now)}});
}

void RunningTargetAlerts::show(
    Occasion occasion, const RunningApplication &application, const QString &marketingName)
{
    std::unique_ptr<BrevokAlert> alert = BrevokAlert::create(m_alerts.presenter());
    if (!alert) {
        return;
    }
    const QString name = application.localizedName;
    const AlertButton quit{.title = Texts::tr("Quit %1").arg(name)};
    const AlertButton goOn{.title = Texts::tr("Continue")};
    const bool installing = occasion == Occasion::Install;
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
    const int quits = installing ? alertSecondButton : alertFirstButton;
    m_alerts.show(std::move(alert), this, [this, application, quits](int response) {
        if (response == quits) {
            m_applications.terminate(application);
        }
    });
}

} // namespace brevok
