// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok::demo {

/// One build of a plug-in, as its bundle tells it.
struct SampleBuild {
    QString name;
    QString version; ///< "4.2.1"
    int buildNumber = 0; ///< follows the version in the bundle: "4.2.1 (build 77)"
    int hostVersion = 0; ///< major × 10 + minor
    int kiloBytes = 0; ///< size of its executable
};

/// Writes the zip archive of @p build to @p path: the bundle NAME.InDesignPlugin at its top, with the same
/// bytes every time. The folder exists. @return what went wrong; empty when the archive is there
[[nodiscard]] QString writeSampleArchive(const SampleBuild &build, const QString &path);

} // namespace brevok::demo
