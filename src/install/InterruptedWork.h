// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

namespace brevok {

/// Makes good what killed runs left in the folders @p folders; no disk that keeps silent holds it up. For
/// background threads. @return whether there was anything
bool endInterruptedWork(const QStringList &folders);

} // namespace brevok
