// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>

namespace brevok {

/// Whether the property list library can be trusted with these bytes. It checks bounds by itself, but reads
/// and frees nested containers by recursion, and a binary list may name one object so often that a file of a
/// kilobyte unfolds to gigabytes, and it ends the program over a key with a NUL. Bytes that are no property
/// list at all may pass. Any thread.
[[nodiscard]] bool isHarmlessPropertyList(QByteArrayView bytes);

} // namespace brevok
