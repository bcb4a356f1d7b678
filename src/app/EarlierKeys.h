// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

namespace brevok {

class SettingsStore;

/// Moves the values that earlier versions kept under unprefixed keys; a value under the new key is
/// overwritten.
void moveKeysOfEarlierVersions(SettingsStore &settings);

} // namespace brevok
