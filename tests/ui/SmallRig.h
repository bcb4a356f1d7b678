// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/PropertyLists.h"
#include "support/SampleBundles.h"
#include "ui/windows/SmallWindows.h"

#include <QTemporaryDir>

namespace brevok::testing {

/// The small windows, and the program that they tell of.
struct SmallRig {
    [[nodiscard]] MainBundle bundleSaying(const QMap<QString, QString> &information) const
    {
        writeFile(folder.filePath(QStringLiteral("Info.plist")), propertyList(information));
        return {QStringLiteral("/x/My Program.v2.app"), folder.path()};
    }
    QTemporaryDir folder;
    MainBundle bundle = bundleSaying({});
    SmallWindows windows{bundle};
};

} // namespace brevok::testing
