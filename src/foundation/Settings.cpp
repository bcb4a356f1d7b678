// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Settings.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array table{
    Setting{SettingKeys::startAtLogin, QLatin1StringView("startAtLogin"), Setting::Type::Truth, 1,
        QT_TRANSLATE_NOOP("Brevok", "Start at &login")},
    Setting{SettingKeys::showNotifications, QLatin1StringView("showNotifications"), Setting::Type::Truth, 1,
        QT_TRANSLATE_NOOP("Brevok", "Show &notifications")},
    Setting{SettingKeys::automaticChecks, QLatin1StringView("checkForUpdates"), Setting::Type::Truth, 1,
        QT_TRANSLATE_NOOP("Brevok", "&Check for new versions of this application")},
    Setting{SettingKeys::autoUpdate, QLatin1StringView("autoUpdate"), Setting::Type::Truth, 0,
        QT_TRANSLATE_NOOP("Brevok", "&Update Plug-Ins automatically")},
    Setting{SettingKeys::logLevel, QLatin1StringView("logLevel"), Setting::Type::Level, 0,
        QT_TRANSLATE_NOOP("Brevok", "Write a &detailed log")},
};

} // namespace

QVariant Setting::valueFrom(int found) const
{
    return type == Type::Truth ? QVariant(found != 0) : QVariant(found);
}

std::span<const Setting> allSettings()
{
    return table;
}

const Setting *findSetting(const QString &nameOrKey)
{
    const auto *const found = std::find_if(table.cbegin(), table.cend(),
        [&](const Setting &setting) { return nameOrKey == setting.name || nameOrKey == setting.key; });
    return found == table.cend() ? nullptr : found;
}

std::optional<bool> truthOf(const QString &word)
{
    const QString lower = word.trimmed().toLower();
    if (QStringList{u"yes"_s, u"true"_s, u"on"_s, u"1"_s}.contains(lower)) {
        return true;
    }
    if (QStringList{u"no"_s, u"false"_s, u"off"_s, u"0"_s}.contains(lower)) {
        return false;
    }
    return std::nullopt;
}

std::variant<QVariant, QString> settingFromText(
    const Setting &setting, const QString &name, const QString &text)
{
    if (setting.type == Setting::Type::Level) {
        bool isNumber = false;
        const int level = text.toInt(&isNumber);
        if (!isNumber || level < 0) {
            return u"'%1' is not a value for %2: use a whole number, 0 or above."_s.arg(text, name);
        }
        return QVariant(level);
    }
    if (const std::optional<bool> truth = truthOf(text)) {
        return QVariant(*truth);
    }
    return u"'%1' is not a value for %2: use yes or no."_s.arg(text, name);
}

} // namespace brevok
