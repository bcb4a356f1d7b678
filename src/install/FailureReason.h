// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <optional>

namespace brevok {

/// What a person is told of @p failure in a few words, also when nothing is known of it.
[[nodiscard]] QString reasonOf(const std::optional<BrevokError> &failure);
/// The failure's own words where reasonOf() has another; empty where it has not.
[[nodiscard]] QString detailOf(const std::optional<BrevokError> &failure);
/// Whether an install failed because of its archive, and would fail with it again. @p answer is what the
/// operation answered. A target that cannot take the plug-in says nothing about the archive.
[[nodiscard]] bool blamesArchive(bool answer, const BrevokError &failure);

} // namespace brevok
