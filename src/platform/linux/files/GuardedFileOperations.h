// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileOperations.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/ReplacedItem.h"

#include <sys/types.h>

namespace brevok {

/// The file manager of a process that works with root's rights on one request of a caller, who may change
/// whatever the caller's own rights allow at any moment. No link that the caller could have planted is
/// followed, what the caller could not read is not given away, and nothing is copied or unpacked but the
/// source that was named before. The target's own name leads to the whole old item, to nothing, or to the
/// whole new one; for that to hold over a power cut it takes finish() and repair(). One thread at a time.
class GuardedFileOperations final : public FileOperations {
public:
    /// What a request installs: a file of the caller's, until its bytes are taken.
    struct Source {
        QString path{};
        FileDescriptor file{};
        QByteArray digest{}; ///< of the bytes that somebody was asked about
        std::shared_ptr<void> reservation{}; ///< of memory, for as long as the bytes are there
    };

    /// Works for the user @p caller, who wants something done to @p target.
    GuardedFileOperations(uid_t caller, QString target, Source source);
    GuardedFileOperations(uid_t caller, QString target)
        : GuardedFileOperations(caller, std::move(target), Source())
    {
    }

    /// What the bytes that are taken must be: the ones that openSource() saw, or whatever is there then.
    enum class Bytes { AsSeen, Any };
    /// Opens the regular file at @p path if it is the caller's own and no longer than @p longest bytes. That
    /// costs neither disk nor memory. @return nothing with the reason in @p error
    [[nodiscard]] static std::optional<Source> openSource(
        const QString &path, uid_t caller, qint64 longest, Bytes bytes, ErrorSlot error);
    /// Copies the bytes of @p source to memory, or to a file without a name in @p scratch: from then on
    /// nobody else can change them, and it may be installed. @return false with the reason in @p error
    [[nodiscard]] static bool takeSource(Source &source, const QString &scratch, ErrorSlot error);
    /// Ends what a killed process left of work on @p target.
    [[nodiscard]] static replaceditem::Repair repair(
        const QString &target, const replaceditem::Interrupted &what);
    /// After an install or a removal was answered: brings what became of the target to the disk and deletes
    /// what it replaced. @return whether nothing is left for repair()
    [[nodiscard]] bool finish();

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

private:
    [[nodiscard]] bool copySource(int folder, const QByteArray &name) const;

    uid_t m_caller;
    QString m_target;
    Source m_source;
    FileDescriptor m_aside; ///< the folder where what stood at the target waits for its successor
    bool m_placed = false; ///< the target is in place and the caller's already
};

} // namespace brevok
