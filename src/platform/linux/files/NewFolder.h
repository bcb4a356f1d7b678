// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <QByteArray>

namespace brevok::newfolder {

/// Whether a link may stand where a folder is wanted.
enum class Links { Followed, Refused };

/// Opens the folder at @p path below @p folder, and makes what is missing of it. Nothing is made when
/// @p folder itself has gone meanwhile. Failures leave their reason in errno.
[[nodiscard]] FileDescriptor open(int folder, const QByteArray &path, Links links);

} // namespace brevok::newfolder
