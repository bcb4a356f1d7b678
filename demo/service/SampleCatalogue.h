// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok::demo {

/// Fills @p root with accounts, lists, icons and archives of a small sample catalogue, unless something of a
/// catalogue (or of anybody else's) is there already. The folder is made when missing. Addresses in the lists
/// are paths on the service. @return what went wrong; empty otherwise
[[nodiscard]] QString ensureSampleCatalogue(const QString &root);

} // namespace brevok::demo
