// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

namespace brevok {

/// Called first in main(): reading from a standard stream that the caller closed ends at once and writing to
/// it fails or is lost, and no file that is opened later takes its place.
void keepStandardStreams();

} // namespace brevok
