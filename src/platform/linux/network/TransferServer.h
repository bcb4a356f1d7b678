// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

namespace brevok {

/// Moves data for the program at the other end of standard input, a socket, until that closes it.
void serveTransfers();

} // namespace brevok
