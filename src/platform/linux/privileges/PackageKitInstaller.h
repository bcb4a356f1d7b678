// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SoftwareInstaller.h"

namespace brevok {

/// Installs through PackageKit on the system bus, which is connected anew for each package.
class PackageKitInstaller final : public SoftwareInstaller {
public:
    void install(const QString &path, QObject *context, ProgressHandler progress, DoneHandler done) override;
};

} // namespace brevok
