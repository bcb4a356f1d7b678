// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace brevok::client {

/// The status document as a person reads it.
[[nodiscard]] QString statusText(const QJsonObject &status);
/// The list of targets as a person reads it.
[[nodiscard]] QString targetsText(const QJsonArray &targets);
/// What became of a machine's packages, but for what failed, which standard error has.
[[nodiscard]] QString convergeText(const QJsonObject &document);
/// The settings, one "name = value" a line.
[[nodiscard]] QString settingsText(const QJsonObject &settings);
/// The value of a setting as text: yes, no, or a number.
[[nodiscard]] QString settingText(const QJsonValue &value);

} // namespace brevok::client
