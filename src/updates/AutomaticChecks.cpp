// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "updates/AutomaticChecks.h"

#include "foundation/Settings.h"
#include "platform/SettingsStore.h"
#include "platform/StateStore.h"

namespace brevok {

using namespace Qt::StringLiterals;

AutomaticChecks::AutomaticChecks(SettingsStore &settings, StateStore &state, Times times, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_state(state)
    , m_last(state.date(lastCheckKey))
    , m_times(times)
    , m_timer(this)
{
    connect(&state, &StateStore::becameReadable, this,
        [this] { m_last = std::max(m_last, m_state.date(lastCheckKey)); });
    connect(&state, &StateStore::everythingWanted, this, &AutomaticChecks::keepLast);
    m_timer.setObjectName(u"automaticUpdateChecks"_s);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &AutomaticChecks::look);
    connect(&settings, &SettingsStore::changed, this, [this](const QString &key) {
        if (key == SettingKeys::automaticChecks) {
            follow();
        }
    });
    follow();
}

bool AutomaticChecks::allowed() const
{
    return m_settings.boolValue(SettingKeys::automaticChecks);
}

void AutomaticChecks::setAllowed(bool allowed)
{
    m_settings.setValue(SettingKeys::automaticChecks, allowed);
}

void AutomaticChecks::checked()
{
    m_last = QDateTime::currentDateTimeUtc();
    keepLast();
}

void AutomaticChecks::keepLast()
{
    m_state.setDate(lastCheckKey, m_last);
}

bool AutomaticChecks::isDue(const QDateTime &last, const QDateTime &now, std::chrono::milliseconds period)
{
    return last > now || last.msecsTo(now) >= period.count();
}

void AutomaticChecks::follow()
{
    if (!allowed()) {
        m_timer.stop();
    } else if (!m_timer.isActive()) {
        m_timer.start(m_times.first);
    }
}

void AutomaticChecks::look()
{
    m_timer.start(m_times.look);
    if (isDue(m_last, QDateTime::currentDateTimeUtc(), m_times.period)) {
        Q_EMIT due();
    }
}

} // namespace brevok
