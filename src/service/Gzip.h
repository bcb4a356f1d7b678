// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <memory>
#include <optional>

namespace brevok {

/// Decompresses gzip data (one member or several) piece by piece, with no more memory than a piece takes.
class GzipReader final {
public:
    GzipReader();
    ~GzipReader();
    Q_DISABLE_COPY_MOVE(GzipReader)

    /// Adds compressed data behind what was not read yet.
    void add(const QByteArray &data);
    /// Decompresses up to @p size bytes into @p buffer. @return how many; 0 when more data is needed, at the
    /// end, and when the data is broken
    [[nodiscard]] qint64 read(char *buffer, qint64 size);

    /// Whether the data so far is whole: it ends where a member ends.
    [[nodiscard]] bool isComplete() const;
    /// Whether something in the data is not gzip.
    [[nodiscard]] bool isBroken() const;
    /// Whether nothing was added at all.
    [[nodiscard]] bool isEmpty() const;
    /// How many bytes were added and not decompressed yet.
    [[nodiscard]] qint64 pending() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

/// What the gzip data in @p data holds; nothing when it is truncated, broken, empty, or holds more than @p
/// limit bytes. Any thread.
[[nodiscard]] std::optional<QByteArray> gunzip(const QByteArray &data, qint64 limit);

} // namespace brevok
