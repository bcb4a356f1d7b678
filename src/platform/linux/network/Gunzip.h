// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>

#include <array>
#include <functional>

#define ZLIB_CONST
#include <zlib.h>

namespace brevok {

/// Decompresses gzip data (one member or several) piece by piece, with no more memory than a piece takes.
/// Tells whether it was whole, which the transfer library does not.
class Gunzip final {
public:
    /// Gets what came out; false stops.
    using Sink = std::function<bool(QByteArrayView)>;

    explicit Gunzip(Sink sink);
    ~Gunzip();
    Q_DISABLE_COPY_MOVE(Gunzip)

    /// @return false when the data is no gzip or the sink wants no more
    [[nodiscard]] bool add(QByteArrayView data);
    /// Whether the data so far ends where a member ends.
    [[nodiscard]] bool isWhole() const { return !m_broken && m_atEndOfMember; }
    [[nodiscard]] bool isBroken() const { return m_broken; }

private:
    [[nodiscard]] bool step();

    Sink m_sink;
    z_stream m_stream = {};
    std::array<char, 64UL * 1024> m_piece;
    bool m_atEndOfMember = true;
    bool m_broken;
};

} // namespace brevok
