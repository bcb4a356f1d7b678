// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/SettingsDocument.h"

namespace brevok {

using namespace Qt::StringLiterals;

QJsonObject settingsDocument(const SettingsAccess &settings)
{
    QJsonObject document;
    for (const Setting &setting : allSettings()) {
        document.insert(setting.name, settings.setting(setting).toJsonValue());
    }
    return document;
}

QJsonValue settingValue(const SettingsAccess &settings, const QString &key)
{
    const Setting *const setting = findSetting(key);
    return setting == nullptr ? QJsonValue(QJsonValue::Undefined) : settings.setting(*setting).toJsonValue();
}

QString noSuchSetting(const QString &key)
{
    return u"There is no setting '%1'."_s.arg(key);
}

std::optional<QString> setSettingFromText(
    SettingsAccess &settings, const QString &key, const QString &value, StoreWaiter waiter)
{
    const Setting *const setting = findSetting(key);
    if (setting == nullptr) {
        return noSuchSetting(key);
    }
    const auto meant = settingFromText(*setting, key, value);
    if (const auto *wrong = std::get_if<QString>(&meant)) {
        return *wrong;
    }
    if (settings.isLocked(*setting)) {
        return u"'%1' is managed by the administrator and cannot be changed here."_s.arg(key);
    }
    settings.setSetting(*setting, std::get<QVariant>(meant), std::move(waiter));
    return std::nullopt;
}

} // namespace brevok
