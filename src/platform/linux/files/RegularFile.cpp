// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/RegularFile.h"

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/FileStateOf.h"
#include "platform/linux/files/SafePath.h"

#include <QFile>

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevok {

namespace {

struct OpenedFile {
    FileDescriptor file;
    FileState state;
};

std::optional<OpenedFile> openRegularFile(const QString &path)
{
    // Without O_NONBLOCK a FIFO in the file's place would be waited for.
    FileDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat facts = {};
    if (!file || ::fstat(file.get(), &facts) != 0 || !S_ISREG(facts.st_mode)) {
        return std::nullopt;
    }
    return OpenedFile{std::move(file), fileState(facts)};
}

} // namespace

std::optional<QByteArray> readRegularFile(const QString &path, qint64 limit, FileState *state)
{
    const std::optional<OpenedFile> opened = openRegularFile(path);
    if (!opened) {
        return std::nullopt;
    }
    const qint64 size = opened->state.size;
    if (state != nullptr) {
        *state = opened->state;
    }
    return size <= limit ? safepath::readBytes(opened->file.get(), 0, size) : std::nullopt;
}

std::optional<FileTail> readFileTail(const QString &path, qint64 limit)
{
    const std::optional<OpenedFile> opened = openRegularFile(path);
    if (!opened) {
        return std::nullopt;
    }
    const qint64 length = std::min(opened->state.size, limit);
    std::optional<QByteArray> bytes =
        safepath::readBytes(opened->file.get(), opened->state.size - length, length);
    return bytes ? std::optional(FileTail{std::move(*bytes), length == opened->state.size}) : std::nullopt;
}

} // namespace brevok
