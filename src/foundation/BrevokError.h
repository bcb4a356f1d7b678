// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QMap>
#include <QString>

namespace brevok {

/// An error as it travels between rooms: never thrown, returned through an out-parameter or a completion
/// handler. A function that can fail takes a `std::optional<BrevokError> *` and fills it exactly when it
/// fails.
struct BrevokError {
    QString domain{}; ///< reverse-domain name of the family that `code` belongs to
    int code = 0;
    QString description{}; ///< one sentence for the user, localised
    QString recoverySuggestion{}; ///< what the user can do, localised; may be empty
    QList<BrevokError> detailedErrors{}; ///< the errors that this one sums up
    QMap<QString, QString> details{}; ///< further facts for the log, such as a path or an address

    /// The error's facts in one line, "-" when there are none.
    [[nodiscard]] QString userInfoText() const;
};

/// Errors of transport: no answer of the service, a broken connection, a refused certificate.
inline constexpr auto transportErrorDomain = "com.tolvane.brevok.transport";
/// Errors of a reply's content (the service answered, but not with what was asked for).
inline constexpr auto connectionErrorDomain = "com.tolvane.brevok.connection";
/// Errors of installing and removing.
inline constexpr auto installerErrorDomain = "com.tolvane.brevok.installer";
/// Errors of files and folders; the code is the system's errno.
inline constexpr auto fileErrorDomain = "com.tolvane.brevok.files";

/// Transport code of a request that got no answer in time.
inline constexpr int timedOutCode = -1001;

} // namespace brevok
