// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/Gunzip.h"

#include <array>

#define ZLIB_CONST
#include <zlib.h>

namespace brevok {

namespace {

constexpr int gzipOnly = MAX_WBITS + 16;
constexpr size_t pieceSize = size_t{64} * 1024;

} // namespace

struct Gunzip::State {
    Sink sink;
    z_stream stream = {};
    std::array<char, pieceSize> piece;
    bool atEndOfMember = true;
    bool broken = false;

    // Puts out what fits the piece. @return whether there may be more
    bool step()
    {
        if (atEndOfMember) {
            inflateReset(&stream);
        }
        stream.next_out = reinterpret_cast<Bytef *>(piece.data());
        stream.avail_out = pieceSize;
        const int result = inflate(&stream, Z_NO_FLUSH);
        atEndOfMember = result == Z_STREAM_END;
        broken = result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR;
        return !broken && (stream.avail_out == 0 || (atEndOfMember && stream.avail_in > 0));
    }
};

Gunzip::Gunzip(Sink sink)
    : m_state(std::make_unique<State>())
{
    m_state->sink = std::move(sink);
    m_state->broken = inflateInit2(&m_state->stream, gzipOnly) != Z_OK;
}

Gunzip::~Gunzip()
{
    inflateEnd(&m_state->stream);
}

bool Gunzip::add(QByteArrayView data)
{
    State &state = *m_state;
    state.stream.next_in = reinterpret_cast<const Bytef *>(data.data());
    state.stream.avail_in = static_cast<uInt>(data.size());
    bool more = !data.isEmpty() && !state.broken;
    while (more) {
        more = state.step();
        const auto count = static_cast<qsizetype>(pieceSize - state.stream.avail_out);
        if (count > 0 && !state.sink(QByteArrayView(state.piece.data(), count))) {
            return false;
        }
    }
    return !state.broken;
}

bool Gunzip::isWhole() const
{
    return !m_state->broken && m_state->atEndOfMember;
}

bool Gunzip::isBroken() const
{
    return m_state->broken;
}

} // namespace brevok
