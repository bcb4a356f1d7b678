// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileOperations.h"

namespace brevok {

/// The file manager on Linux. Tests answer for the effective user.
class LinuxFileOperations : public FileOperations {
public:
    [[nodiscard]] bool fileExists(const QString &path, bool *isDirectory = nullptr) const override;
    [[nodiscard]] bool isReadable(const QString &path) const override;
    [[nodiscard]] bool isWritable(const QString &path) const override;
    [[nodiscard]] bool isExecutable(const QString &path) const override;
    [[nodiscard]] bool isDeletable(const QString &path) const override;

    bool prepareFolder(const QString &path, const QString &within, ErrorSlot error) override;
    bool removeItem(const QString &path, ErrorSlot error) override;
    bool setAside(const QString &path, ErrorSlot error) override;
    bool bringBack(const QString &path) override;
    void discard(const QString &path) override;
    [[nodiscard]] std::unique_ptr<QFile> openVerified(
        const QString &path, const QByteArray &checksum, ErrorSlot error) override;
    bool copyItem(const QString &source, const QString &target, ErrorSlot error) override;
    bool extractZip(const QFile &archive, const QString &target, ErrorSlot error) override;

    bool addPermissionsAndOwner(
        const QString &path, quint32 permissions, quint32 user, ErrorSlot error) override;
    [[nodiscard]] QList<AttributeFailure> addPermissionsAndOwnerToTree(
        const QString &path, quint32 permissions, quint32 user) override;
};

} // namespace brevok
