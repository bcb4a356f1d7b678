// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/FolderTest.h"

#include <QDir>

namespace brevok::testing {

/// A test of the settings file.
class SettingsTest : public FolderTest {
protected:
    [[nodiscard]] QString settingsFolder() const { return path(QStringLiteral("tolvane")); }
    [[nodiscard]] QString settingsFile() const { return settingsFolder() + QStringLiteral("/brevok.conf"); }
    /// What was set aside of it.
    [[nodiscard]] QStringList aside(const QString &what) const
    {
        return QDir(settingsFolder())
            .entryList({QStringLiteral("*.%1-*").arg(what)}, QDir::AllEntries | QDir::System | QDir::Hidden);
    }
};

} // namespace brevok::testing
