// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/DefinitionTables.h"
#include "fuzz/Fuzz.h"

namespace brevok::fuzz {

/// Takes a list over as the service's replies are.
inline void take(DefinitionTables &tables, const PluginList &list)
{
    for (const ListedPrefix &listed : list.prefixes) {
        tables.merge(listed);
    }
    for (const ListedPrefix &listed : list.prefixes) {
        tables.dropWhatIsNotListed(listed);
    }
}

} // namespace brevok::fuzz
