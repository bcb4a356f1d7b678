// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace brevok {

/// Tells one state of a file from another, also when both were written within one tick of the clock.
struct FileStamp {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modified = 0; ///< nanoseconds
    qint64 changed = 0; ///< nanoseconds

    bool operator==(const FileStamp &) const = default;
};

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
    FileStamp stamp{}; ///< when Read or Unchanged
};

/// Reads the file at @p path, unless it is as at @p known, and takes everyone else's rights to it away.
[[nodiscard]] PrivateFile readPrivateFile(const QString &path, const FileStamp &known, qint64 limit);

/// The stamp of what stands at @p path.
[[nodiscard]] FileStamp stampOf(const QString &path);

/// Creates a file that nobody else may open, from its first moment on. Something else in its place is
/// removed.
bool writePrivateFile(const QString &path, const QByteArray &contents, std::optional<BrevokError> *error);

/// Makes the folder, with those above it; one that is made here is the user's alone.
bool makePrivateFolder(const QString &path);

/// A name beside @p path that says what became of the file and when, and which nothing bears yet.
[[nodiscard]] QString nameAside(const QString &path, const QString &what);

} // namespace brevok
