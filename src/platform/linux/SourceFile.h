// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/FileDescriptor.h"

#include <QFile>

#include <cerrno>
#include <memory>

#include <sys/stat.h>

namespace brevok {

/// The open file @p opened as one that something is installed from, under the path it came from. @return
/// nothing with the reason in errno when it is no regular file
[[nodiscard]] inline std::unique_ptr<QFile> sourceOf(FileDescriptor opened, const QString &path)
{
    struct stat facts { };
    if (::fstat(opened.get(), &facts) != 0) {
        return nullptr;
    }
    auto source = std::make_unique<QFile>(path);
    if (!S_ISREG(facts.st_mode)
        || !source->open(opened.get(), QIODevice::ReadOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle)) {
        errno = EINVAL;
        return nullptr;
    }
    (void)opened.release();
    return source;
}

} // namespace brevok
