// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileOperations.h"
#include "platform/linux/files/FileDescriptor.h"

namespace brevok {

/// @p opened as what is installed from, under the @p path it came from; when that is no open file, the reason
/// is in errno. It must be regular and have the SHA-256 @p checksum, unless that is empty.
[[nodiscard]] std::unique_ptr<QFile> sourceOf(
    FileDescriptor opened, const QString &path, const QByteArray &checksum, FileOperations::ErrorSlot error);

} // namespace brevok
