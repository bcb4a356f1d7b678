// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>
#include <QVariant>

#include <optional>

namespace brevok {

/// How grave an alert is; the numbers are the platform's.
enum class AlertStyle { Warning = 0, Informational = 1, Critical = 2 };

/// The key that presses a button, beside the usual ones (Return presses the first, Escape a button named
/// "Cancel").
enum class AlertKey { Usual, Return, Escape, ReturnAndEscape };

struct AlertButton {
    QString title;
    bool enabled = true;
    AlertKey key = AlertKey::Usual;
};

/// What an alert shows.
struct AlertContent {
    std::optional<QString> messageText;
    std::optional<QString> informativeText;
    AlertStyle style = AlertStyle::Warning;
    QString icon; ///< name of an image of the program; empty for the usual one
    QList<AlertButton> buttons; ///< none means the platform's single "OK"
    QVariant accessory; ///< a view of the presenter's kind; invalid for none
};

/// Answers of alerts; the numbers are the platform's.
inline constexpr int alertNotShown = 0;
inline constexpr int alertFirstButton = 1000;
inline constexpr int alertSecondButton = 1001;
inline constexpr int alertThirdButton = 1002;
inline constexpr int alertStopped = -1000;
inline constexpr int alertContinued = -1002;

} // namespace brevok
