// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace brevok {

/// Errors of the system's installer of software packages.
inline constexpr auto softwareErrorDomain = "com.tolvane.brevok.software";

/// Codes of softwareErrorDomain.
enum class SoftwareError {
    Unavailable = 1, ///< this system offers no such service, or it did not answer
    Ended, ///< the service ended while it worked
    Refused, ///< the service tells why
    Cancelled, ///< by the user or by the system
};

/// What a package says of itself.
struct SoftwareIdentity {
    QString name;
    QString version;
};

/// Reads the package file at @p path; nothing for a file that is none. Waits for the disk: not for the main
/// thread.
[[nodiscard]] std::optional<SoftwareIdentity> softwareIdentity(const QString &path);

/// The operating system's own installer of software packages. It asks the user for the rights it needs.
/// Main thread.
class SoftwareInstaller {
public:
    /// Told of 0 to 100, or of -1 while nobody can tell.
    using ProgressHandler = std::function<void(int percent)>;
    using DoneHandler = std::function<void(const std::optional<BrevokError> &)>;

    SoftwareInstaller() = default;
    virtual ~SoftwareInstaller() = default;
    Q_DISABLE_COPY_MOVE(SoftwareInstaller)

    /// Hands the package file at the absolute @p path to the system and returns at once. The file stays as it
    /// is until @p done was called, which happens once, later than this call; neither handler is called when
    /// @p context is gone (the system then goes on with what it began). The user may take any time to answer
    /// the system's questions.
    virtual void install(
        const QString &path, QObject *context, ProgressHandler progress, DoneHandler done) = 0;
};

} // namespace brevok
