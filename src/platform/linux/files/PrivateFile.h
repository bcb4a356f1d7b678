// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"
#include "platform/FileState.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace brevok {

/// What stands at a path where a file of ours belongs.
struct PrivateFile {
    enum class State {
        Missing,
        Unchanged, ///< as at the stamp that the caller knows; not read again
        Read,
        Unusable, ///< no regular file, or too large: it will never be readable
        Failed, ///< could not be read this time, or not with our rights
    };
    State state = State::Missing;
    QString reason{}; ///< when Unusable or Failed
    QByteArray contents{}; ///< when Read
    FileState stamp{}; ///< when Read or Unchanged
};

/// Reads the file at @p path, unless it is as at @p known, and takes everyone else's rights to it away.
[[nodiscard]] PrivateFile readPrivateFile(const QString &path, const FileState &known, qint64 limit);

/// Creates a file that nobody else may open, from its first moment on. Something else in its place is
/// removed.
bool writePrivateFile(const QString &path, const QByteArray &contents, std::optional<BrevokError> *error);

/// Makes the folder, with those above it; one that is made here is the user's alone.
bool makePrivateFolder(const QString &path);

/// A name beside @p path that says what became of the file and when, and which nothing bears yet.
[[nodiscard]] QString nameAside(const QString &path, const QString &what);

} // namespace brevok
