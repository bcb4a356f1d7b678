// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/InterruptedWork.h"

#include "foundation/BoundedWork.h"
#include "foundation/Log.h"
#include "platform/FileOperations.h"

namespace brevok {

using namespace Qt::StringLiterals;

bool endInterruptedWork(const QStringList &folders)
{
    bool found = false;
    for (const QString &folder : folders) {
        const auto clear = [folder](Pulse &) {
            return clearLeftovers(folder);
        };
        if (bounded<bool>(folder, clear).value_or(false)) {
            logLine(u"made good what an interrupted run had left in %1"_s.arg(folder));
            found = true;
        }
    }
    return found;
}

} // namespace brevok
