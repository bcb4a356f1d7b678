// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/network/Gunzip.h"

namespace brevok {

namespace {

constexpr int gzipOnly = MAX_WBITS + 16;

} // namespace

Gunzip::Gunzip(Sink sink)
    : m_sink(std::move(sink))
    , m_broken(inflateInit2(&m_stream, gzipOnly) != Z_OK)
{
}

Gunzip::~Gunzip()
{
    inflateEnd(&m_stream);
}

bool Gunzip::add(QByteArrayView data)
{
    m_stream.next_in = reinterpret_cast<const Bytef *>(data.data());
    m_stream.avail_in = static_cast<uInt>(data.size());
    bool more = !data.isEmpty() && !m_broken;
    while (more) {
        more = step();
        const auto count = static_cast<qsizetype>(m_piece.size() - m_stream.avail_out);
        if (count > 0 && !m_sink(QByteArrayView(m_piece.data(), count))) {
            return false;
        }
    }
    return !m_broken;
}

// Puts out what fits the piece. @return whether there may be more
bool Gunzip::step()
{
    if (m_atEndOfMember) {
        inflateReset(&m_stream);
    }
    m_stream.next_out = reinterpret_cast<Bytef *>(m_piece.data());
    m_stream.avail_out = static_cast<uInt>(m_piece.size());
    const int result = inflate(&m_stream, Z_NO_FLUSH);
    m_atEndOfMember = result == Z_STREAM_END;
    m_broken = result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR;
    return !m_broken && (m_atEndOfMember ? m_stream.avail_in > 0 : m_stream.avail_out == 0);
}

} // namespace brevok
