// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QString>

#include <optional>

namespace brevok {

/// Gives the finished file @p from its final name @p to, replacing an older file, so that not even a power
/// cut leaves part of a file under that name: the bytes reach the disk before the name, and the name before
/// this returns. Both are in one folder. Blocks; any thread but the main one.
/// @return false with the reason in @p error (domain fileErrorDomain); @p from may still be there then
bool renameDurably(const QString &from, const QString &to, std::optional<BrevokError> *error);

} // namespace brevok
