// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok {

/// Where the user's files of this program belong. Folders are made by whoever writes into them.
struct StandardFolders {
    QString settingsFile; ///< the settings store
    QString applicationSupport; ///< Application Support folder
    QString library; ///< Library folder, which holds "Logs"
    QString autostart; ///< where login items are kept

    /// The program's own folder for icons and downloaded archives.
    [[nodiscard]] QString dataFolder() const;
    /// What the program itself keeps between runs.
    [[nodiscard]] QString stateFile() const;
    /// A file called @p name among the user's logs.
    [[nodiscard]] QString logPathForFile(const QString &name) const;
    /// The log file.
    [[nodiscard]] QString logFile() const;
    /// Where new versions of the application are downloaded to, in the data folder.
    [[nodiscard]] QString updatesFolder() const;

    /// Whether the program itself uses, or may come to use, this name in the data folder, so that no name
    /// from outside may take it there.
    [[nodiscard]] static bool isReserved(const QString &name);
};

/// The folders of the user who runs this process.
[[nodiscard]] StandardFolders standardFoldersForUser();

/// Where the administrator's policy for this copy of the program stands:
/// "PREFIX/etc/tolvane-brevok/policy.conf" for a program in "PREFIX/bin", the system's own "etc" for PREFIX
/// "/usr". It follows from the executable alone, so that no option and no variable of a user leads away from
/// it. Needs no application object.
[[nodiscard]] QString administratorsPolicyFile();
/// The same for the program at @p executable.
[[nodiscard]] QString administratorsPolicyFile(const QString &executable);

} // namespace brevok
