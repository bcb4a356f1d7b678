// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "updates/AutomaticChecks.h"

#include "platform/SettingsStore.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

const QString allowedKey = u"SUEnableAutomaticChecks"_s;
const QString lastCheckKey = u"SULastCheckTime"_s;

} // namespace

AutomaticChecks::AutomaticChecks(SettingsStore &settings, Times times, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_times(times)
    , m_timer(this)
{
    m_timer.setObjectName(u"automaticUpdateChecks"_s);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &AutomaticChecks::look);
    connect(&settings, &SettingsStore::changed, this, [this](const QString &key) {
        if (key == allowedKey) {
            follow();
        }
    });
    follow();
}

bool AutomaticChecks::allowed() const
{
    return m_settings.boolValue(allowedKey);
}

void AutomaticChecks::setAllowed(bool allowed)
{
    m_settings.setValue(allowedKey, allowed);
}

void AutomaticChecks::checked()
{
    m_settings.setValue(lastCheckKey, QDateTime::currentDateTimeUtc());
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
    if (isDue(m_settings.dateValue(lastCheckKey), QDateTime::currentDateTimeUtc(), m_times.period)) {
        Q_EMIT due();
    }
}

} // namespace brevok
