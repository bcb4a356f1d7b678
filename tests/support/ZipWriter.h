// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QList>
#include <QString>

#include <zlib.h>

namespace brevok::testing {

/// Kinds and permissions of entries as Unix has them.
inline constexpr quint32 zipFile = 0100644;
inline constexpr quint32 zipProgram = 0100755;
inline constexpr quint32 zipFolder = 0040755;
inline constexpr quint32 zipLink = 0120777;

/// One entry of a zip archive as it shall stand there, sensible or not.
struct ZipMember {
    QByteArray name;
    QByteArray data{}; ///< a link's target for a link
    quint32 mode = zipFile;
    bool deflated = false;
    qint64 claimedSize = -1; ///< what the archive says it unpacks to; -1 for the truth
    quint16 flags = 0; ///< bit 0 for encrypted
    bool wrongChecksum = false;
    qsizetype copies = 1; ///< how often the same bytes are listed, under names with a number behind
};

namespace zip_detail {

inline quint32 checksum(const QByteArray &data)
{
    const auto *bytes = reinterpret_cast<const Bytef *>(data.constData());
    return static_cast<quint32>(::crc32_z(0, bytes, static_cast<z_size_t>(data.size())));
}

/// The bytes of numbers, the lowest first.
template <typename... Numbers> QByteArray bytesOf(Numbers... numbers)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    (out << ... << numbers);
    return bytes;
}

/// What the local header and the index say alike: from the version needed to the length of the name.
inline QByteArray facts(const ZipMember &member, qsizetype packed, qsizetype nameSize)
{
    constexpr quint16 noon = 0x6000;
    constexpr quint16 newYear2024 = 0x5821;
    return bytesOf(quint16(20), member.flags, quint16(member.deflated ? 8 : 0), noon, newYear2024,
        checksum(member.data) ^ (member.wrongChecksum ? 1U : 0U), quint32(packed),
        quint32(member.claimedSize < 0 ? member.data.size() : member.claimedSize), quint16(nameSize),
        quint16(0));
}

} // namespace zip_detail

/// A zip archive of @p members, in that order.
inline QByteArray zipArchive(const QList<ZipMember> &members)
{
    using namespace zip_detail;
    QByteArray body;
    QByteArray index;
    quint16 count = 0;
    for (const ZipMember &member : members) {
        // qCompress puts a length and a zlib header before the deflated bytes and a checksum behind them.
        const QByteArray zlib = member.deflated ? qCompress(member.data) : QByteArray();
        const QByteArray packed = member.deflated ? zlib.mid(6, zlib.size() - 10) : member.data;
        for (qsizetype copy = 0; copy < member.copies; ++copy, ++count) {
            const QByteArray name = member.copies == 1 ? member.name : member.name + QByteArray::number(copy);
            const QByteArray facts = zip_detail::facts(member, packed.size(), name.size());
            const auto offset = static_cast<quint32>(body.size());
            body += "PK\3\4" + facts + name + packed;
            index += QByteArray("PK\1\2\x14\3", 6) + facts; // made on Unix
            constexpr quint16 nothing = 0; // comment, disk and attributes of another system
            index += bytesOf(nothing, nothing, nothing, quint32(member.mode << 16U), offset) + name;
        }
    }
    return body + index + "PK\5\6"
        + bytesOf(quint32(0), count, count, quint32(index.size()), quint32(body.size()), quint16(0));
}

/// The archive of a plug-in bundle NAME.InDesignPlugin as the service publishes them.
inline QByteArray pluginArchive(const QByteArray &name, const QByteArray &information, const QByteArray &code)
{
    const QByteArray bundle = name + ".InDesignPlugin/";
    return zipArchive({{bundle, {}, zipFolder}, {bundle + "Contents/", {}, zipFolder},
        {bundle + "Contents/Info.plist", information, zipFile, true},
        {bundle + "Contents/MacOS/" + name, code, zipProgram, true}});
}

/// Contents that do not get smaller.
inline QByteArray noise(qsizetype size)
{
    QByteArray result(size, Qt::Uninitialized);
    quint32 state = 1;
    for (char &byte : result) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24U);
    }
    return result;
}

} // namespace brevok::testing
