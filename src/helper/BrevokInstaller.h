// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileOperations.h"
#include "platform/HelperTool.h"

namespace brevok {

/// The version of the installer's interface; an older helper is replaced.
inline constexpr int installerInterfaceVersion = 15;

/// The file operations that installing and removing plug-ins needs. Served with root rights by the helper
/// tool, and done in-process where it cannot be reached. No state; any thread.
class BrevokInstaller : public InstallerOperations {
public:
    explicit BrevokInstaller(FileOperations &files);

    /// Whether a source is unpacked rather than copied.
    [[nodiscard]] static bool isArchive(const QString &source);

    [[nodiscard]] int version() override;
    [[nodiscard]] InstallResult install(const InstallOrder &order) override;
    [[nodiscard]] bool removeItemAtPath(const QString &path, ErrorSlot error) override;
    [[nodiscard]] bool fileExistsAtPath(const QString &path) override;
    [[nodiscard]] bool fileExistsAtPath(const QString &path, bool *isDirectory) override;
    [[nodiscard]] bool isReadableFileAtPath(const QString &path) override;
    [[nodiscard]] bool isWritableFileAtPath(const QString &path) override;
    [[nodiscard]] bool isExecutableFileAtPath(const QString &path) override;
    [[nodiscard]] bool isDeletableFileAtPath(const QString &path) override;
    void setUID(quint32 user, quint32 permissions, const QString &item, bool recursive) override;

private:
    [[nodiscard]] InstallResult place(const QString &source, const QString &target, const QString &folder);

    FileOperations &m_files;
};

} // namespace brevok
