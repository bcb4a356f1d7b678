// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

namespace brevok {

/// One entry of a zip archive, as the archive has it: nothing here can be trusted.
struct ZipEntry {
    enum class Kind { File, Folder, Link, Other };
    QByteArray name; ///< byte for byte as the archive has it, like a link's target
    Kind kind = Kind::Other;
    qint64 size = 0; ///< bytes it claims to unpack to
    bool executable = false;
    bool setId = false;
    bool encrypted = false;
    QByteArray linkTarget;
    bool hasTime = false;
    qint64 seconds = 0; ///< modification time since the epoch
    qint64 nanoseconds = 0;
};

/// Reads a zip archive from its index on, entry by entry, in blocks. Any doubt that the parser has about the
/// archive is a failure. One thread.
class ZipReader {
public:
    ZipReader() = default;
    virtual ~ZipReader() = default;
    Q_DISABLE_COPY_MOVE(ZipReader)

    enum class Step { Got, End, Failed };
    [[nodiscard]] virtual Step next(ZipEntry &entry) = 0;
    /// The next bytes of the current entry, valid until the next call.
    [[nodiscard]] virtual Step data(const char *&bytes, size_t &size) = 0;
    /// What is wrong, and the system's code for it: EILSEQ when it is the archive.
    struct Failure {
        QString text;
        int code = 0;
    };
    [[nodiscard]] virtual Failure failure() const = 0;
};

/// @p archive is an open file, read by position; @p blockSize is how much is read at a time. For use on the
/// thread that opens it.
[[nodiscard]] std::unique_ptr<ZipReader> openZipReader(int archive, size_t blockSize);

} // namespace brevok
