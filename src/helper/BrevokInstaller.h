// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileOperations.h"
#include "platform/HelperTool.h"

#include <QFile>

namespace brevok {

/// The version of the installer's interface; an older helper is replaced.
inline constexpr int installerInterfaceVersion = 15;

/// The reason of an error of the file operations in a person's words.
[[nodiscard]] BrevokError causeOf(const BrevokError &error);

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
    /// What is installed, or why an archive could not be opened.
    struct Source {
        QString path{};
        std::unique_ptr<QFile> file{};
        std::optional<BrevokError> error{};
    };
    using Removal = bool (FileOperations::*)(const QString &, ErrorSlot);

    [[nodiscard]] Source open(const InstallOrder &order);
    [[nodiscard]] InstallResult place(const Source &source, const QString &target, const QString &folder);
    [[nodiscard]] bool takeAway(const QString &path, Removal removal, ErrorSlot error);

    FileOperations &m_files;
};

} // namespace brevok
