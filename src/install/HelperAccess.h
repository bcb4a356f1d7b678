// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "helper/BrevokInstaller.h"

namespace brevok {

/// Who does file operations: the privileged helper, or the program itself. A value that any thread may have a
/// copy of; the helper and the disk are asked in the background only.
class HelperAccess final {
public:
    HelperAccess(HelperTool &tool, FileOperations &files);

    /// The same, but nobody is asked for rights.
    [[nodiscard]] HelperAccess unattended() const;

    /// Finds the helper, or installs or replaces it, which may ask the user for rights.
    [[nodiscard]] bool checkUpdateHelper() const;
    /// Who does the next file operations: the helper's proxy or, where it cannot be used, own(). @p valid is
    /// what the check told.
    [[nodiscard]] std::shared_ptr<InstallerOperations> installer(bool valid) const;
    /// The same operations with the program's own rights.
    [[nodiscard]] const std::shared_ptr<InstallerOperations> &own() const { return m_own; }

    /// Whether this user may not put something at @p path, a plug-in or a file, himself, or may not replace
    /// what is there.
    [[nodiscard]] bool isNeededFor(const QString &path) const;

private:
    bool m_mayAsk = true;
    HelperTool *m_tool;
    FileOperations *m_files;
    std::shared_ptr<InstallerOperations> m_own;
};

} // namespace brevok
