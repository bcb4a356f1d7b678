// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/SettingsDocument.h"

#include "platform/SettingsStore.h"

#include <algorithm>
#include <array>
#include <functional>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

struct Switch {
    QLatin1StringView name;
    QLatin1StringView storeKey;
    bool (SettingsAccess::*get)() const;
    void (SettingsAccess::*set)(bool);
};

constexpr std::array switches{
    Switch{QLatin1StringView("startAtLogin"), QLatin1StringView("OrlecStartAtLogin"),
        &SettingsAccess::startAtLogin, &SettingsAccess::setStartAtLogin},
    Switch{QLatin1StringView("showNotifications"), QLatin1StringView("OrlecShowNotifications"),
        &SettingsAccess::showNotifications, &SettingsAccess::setShowNotifications},
    Switch{QLatin1StringView("checkForUpdates"), QLatin1StringView("SUEnableAutomaticChecks"),
        &SettingsAccess::checkForUpdates, &SettingsAccess::setCheckForUpdates},
    Switch{QLatin1StringView("autoUpdate"), QLatin1StringView("OrlecAutoUpdate"), &SettingsAccess::autoUpdate,
        &SettingsAccess::setAutoUpdate},
};

constexpr QLatin1StringView logLevelName("logLevel");
constexpr QLatin1StringView logLevelKey("OrlecLogLevel");

const Switch *findSwitch(const QString &name)
{
    const auto *const found = std::find_if(switches.cbegin(), switches.cend(),
        [&](const Switch &candidate) { return name == candidate.name || name == candidate.storeKey; });
    return found == switches.cend() ? nullptr : found;
}

} // namespace

QJsonObject settingsDocument(const SettingsAccess &settings)
{
    QJsonObject document;
    for (const Switch &setting : switches) {
        document.insert(setting.name, std::invoke(setting.get, settings));
    }
    document.insert(logLevelName, settings.logLevel());
    return document;
}

QJsonValue settingValue(const SettingsAccess &settings, const QString &key)
{
    if (key == logLevelName || key == logLevelKey) {
        return settings.logLevel();
    }
    const Switch *const setting = findSwitch(key);
    return setting == nullptr ? QJsonValue(QJsonValue::Undefined) : std::invoke(setting->get, settings);
}

QString noSuchSetting(const QString &key)
{
    return u"There is no setting '%1'."_s.arg(key);
}

std::variant<StoredSetting, QString> settingFromText(const QString &name, const QString &text)
{
    if (name == logLevelName || name == logLevelKey) {
        bool isNumber = false;
        const int level = text.toInt(&isNumber);
        if (!isNumber || level < 0) {
            return u"'%1' is no value for %2: a whole number from 0 is."_s.arg(text, name);
        }
        return StoredSetting{logLevelKey, level};
    }
    const Switch *const setting = findSwitch(name);
    if (setting == nullptr) {
        return noSuchSetting(name);
    }
    const std::optional<bool> truth = SettingsStore::truthOf(text);
    if (!truth) {
        return u"'%1' is no value for %2: yes and no are."_s.arg(text, name);
    }
    return StoredSetting{setting->storeKey, *truth};
}

std::optional<QString> setSettingFromText(SettingsAccess &settings, const QString &key, const QString &value)
{
    const auto meant = settingFromText(key, value);
    if (const auto *wrong = std::get_if<QString>(&meant)) {
        return *wrong;
    }
    const auto &setting = std::get<StoredSetting>(meant);
    if (settings.isLocked(setting.key)) {
        return u"The administrator decides '%1'; it cannot be changed here."_s.arg(key);
    }
    if (setting.key == logLevelKey) {
        settings.setLogLevel(setting.value.toInt());
    } else {
        std::invoke(findSwitch(key)->set, settings, setting.value.toBool());
    }
    if (const QString problem = settings.problem(); !problem.isEmpty()) {
        return u"'%1' could not be stored: %2"_s.arg(key, problem);
    }
    return std::nullopt;
}

} // namespace brevok
