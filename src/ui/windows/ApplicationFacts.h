// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <QString>

namespace brevok {

class MainBundle;

/// What the small windows tell of the application.
struct ApplicationFacts {
    QString appName;
    QString appVersion;
    QString appDisplayVersion;
    QString appCopyright;

    /// "Version 1.0 (100, 15)", localised.
    [[nodiscard]] QString versionLine() const;
};

[[nodiscard]] ApplicationFacts applicationFacts(const MainBundle &bundle);

/// The application's icon: the bundle's own image, else the icon that the desktop has for applications, else
/// the drawn one. Never null.
[[nodiscard]] QIcon applicationIcon(const MainBundle &bundle);

} // namespace brevok
