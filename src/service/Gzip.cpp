// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/Gzip.h"

#include <algorithm>

#define ZLIB_CONST
#include <zlib.h>

namespace brevok {

namespace {

constexpr int gzipOnly = MAX_WBITS + 16;
constexpr qint64 largestStep = 1 << 30; // the library counts in 32 bits
constexpr qsizetype pieceSize = qsizetype{256} * 1024;

} // namespace

struct GzipReader::State {
    z_stream stream = {};
    QByteArray input;
    bool atEndOfMember = false;
    bool broken = false;
};

GzipReader::GzipReader()
    : m_state(std::make_unique<State>())
{
    m_state->broken = inflateInit2(&m_state->stream, gzipOnly) != Z_OK;
}

GzipReader::~GzipReader()
{
    inflateEnd(&m_state->stream);
}

void GzipReader::add(const QByteArray &data)
{
    m_state->input = pending() == 0 ? data : m_state->input.last(pending()) + data;
    m_state->stream.next_in = reinterpret_cast<const Bytef *>(m_state->input.constData());
    m_state->stream.avail_in = static_cast<uInt>(m_state->input.size());
}

qint64 GzipReader::read(char *buffer, qint64 size)
{
    z_stream &stream = m_state->stream;
    const auto room = static_cast<uInt>(std::min(size, largestStep));
    stream.next_out = reinterpret_cast<Bytef *>(buffer);
    stream.avail_out = room;
    while (!m_state->broken && stream.avail_in > 0 && stream.avail_out > 0) {
        if (m_state->atEndOfMember) {
            inflateReset(&stream);
        }
        const int result = inflate(&stream, Z_NO_FLUSH);
        m_state->atEndOfMember = result == Z_STREAM_END;
        m_state->broken = result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR;
    }
    // What the last call could not put out for want of room comes out without further input.
    if (!m_state->broken && !m_state->atEndOfMember && stream.avail_in == 0 && stream.avail_out > 0) {
        const int result = inflate(&stream, Z_NO_FLUSH);
        m_state->atEndOfMember = result == Z_STREAM_END;
    }
    return room - stream.avail_out;
}

bool GzipReader::isComplete() const
{
    return !m_state->broken && m_state->atEndOfMember && pending() == 0;
}

bool GzipReader::isBroken() const
{
    return m_state->broken;
}

bool GzipReader::isEmpty() const
{
    return m_state->input.isEmpty();
}

qint64 GzipReader::pending() const
{
    return m_state->stream.avail_in;
}

std::optional<QByteArray> gunzip(const QByteArray &data, qint64 limit)
{
    GzipReader reader;
    reader.add(data);
    QByteArray result;
    QByteArray piece(pieceSize, Qt::Uninitialized);
    while (const qint64 count = reader.read(piece.data(), piece.size())) {
        if (result.size() + count > limit) {
            return std::nullopt;
        }
        result.append(piece.constData(), count);
    }
    return reader.isComplete() ? std::optional(result) : std::nullopt;
}

} // namespace brevok
