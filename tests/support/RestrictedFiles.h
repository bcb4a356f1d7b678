// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileOperations.h"

#include <QDir>

#include <algorithm>

namespace brevok::testing {

/// A file manager that says of some paths, and of what is below them, that this user may not write there; the
/// tests' own user may write anywhere.
class RestrictedFiles final : public FileOperations {
public:
    explicit RestrictedFiles(FileOperations &files)
        : m_files(files)
    {
    }

    QStringList forbidden; ///< set before anything is asked

    [[nodiscard]] bool isWritable(const QString &path) const override
    {
        return allowed(path) && m_files.isWritable(path);
    }
    [[nodiscard]] bool isDeletable(const QString &path) const override
    {
        return allowed(path) && m_files.isDeletable(path);
    }

    [[nodiscard]] bool fileExists(const QString &path, bool *isDirectory = nullptr) const override
    {
        return m_files.fileExists(path, isDirectory);
    }
    [[nodiscard]] bool isReadable(const QString &path) const override { return m_files.isReadable(path); }
    [[nodiscard]] bool isExecutable(const QString &path) const override { return m_files.isExecutable(path); }
    bool prepareFolder(const QString &path, const QString &within, ErrorSlot error) override
    {
        return m_files.prepareFolder(path, within, error);
    }
    bool removeItem(const QString &path, ErrorSlot error) override { return m_files.removeItem(path, error); }
    bool setAside(const QString &path, ErrorSlot error) override { return m_files.setAside(path, error); }
    bool bringBack(const QString &path) override { return m_files.bringBack(path); }
    void discard(const QString &path) override { m_files.discard(path); }
    [[nodiscard]] std::unique_ptr<QFile> openVerified(
        const QString &path, const QByteArray &checksum, ErrorSlot error) override
    {
        return m_files.openVerified(path, checksum, error);
    }
    bool copyItem(const QString &source, const QString &target, ErrorSlot error) override
    {
        return m_files.copyItem(source, target, error);
    }
    bool extractZip(const QFile &archive, const QString &target, ErrorSlot error) override
    {
        return m_files.extractZip(archive, target, error);
    }
    bool addPermissionsAndOwner(
        const QString &path, quint32 permissions, quint32 user, ErrorSlot error) override
    {
        return m_files.addPermissionsAndOwner(path, permissions, user, error);
    }
    [[nodiscard]] QList<AttributeFailure> addPermissionsAndOwnerToTree(
        const QString &path, quint32 permissions, quint32 user) override
    {
        return m_files.addPermissionsAndOwnerToTree(path, permissions, user);
    }

private:
    [[nodiscard]] bool allowed(const QString &path) const
    {
        return std::none_of(forbidden.cbegin(), forbidden.cend(),
            [whole = QDir::cleanPath(path)](const QString &place) { return whole.startsWith(place); });
    }

    FileOperations &m_files;
};

} // namespace brevok::testing
