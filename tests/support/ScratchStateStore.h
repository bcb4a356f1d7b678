// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/SqliteStateStore.h"

#include <QTemporaryDir>

namespace brevok::testing {

/// The real store in a folder of its own. entries() tells what the next start would find.
struct ScratchStateStore {
    QTemporaryDir folder;
    SqliteStateStore store{folder.filePath(QStringLiteral("data/state.sqlite"))};
};

} // namespace brevok::testing
