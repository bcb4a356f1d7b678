// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <array>

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
    static const std::array<quint32, 256> table = [] {
        std::array<quint32, 256> made{};
        for (quint32 i = 0; i < made.size(); ++i) {
            quint32 value = i;
            for (int bit = 0; bit < 8; ++bit) {
                value = (value & 1U) != 0 ? 0xEDB88320U ^ (value >> 1U) : value >> 1U;
            }
            made[i] = value;
        }
        return made;
    }();
    quint32 result = 0xFFFFFFFFU;
    for (const char c : data) {
        result = table[(result ^ static_cast<quint8>(c)) & 0xFFU] ^ (result >> 8U);
    }
    return ~result;
}

inline void append(QByteArray &to, int bytes, quint64 value)
{
    for (int i = 0; i < bytes; ++i) {
        to.append(static_cast<char>((value >> (8U * static_cast<unsigned>(i))) & 0xFFU));
    }
}

/// What the local header and the index say alike: from the version needed to the length of the name.
inline QByteArray facts(const ZipMember &member, qsizetype packed, qsizetype nameSize)
{
    QByteArray result;
    append(result, 2, 20);
    append(result, 2, member.flags);
    append(result, 2, member.deflated ? 8 : 0);
    append(result, 2, 0x6000); // 12:00
    append(result, 2, 0x5821); // 1 January 2024
    append(result, 4, checksum(member.data) ^ (member.wrongChecksum ? 1U : 0U));
    append(result, 4, static_cast<quint64>(packed));
    append(result, 4, static_cast<quint64>(member.claimedSize < 0 ? member.data.size() : member.claimedSize));
    append(result, 2, static_cast<quint64>(nameSize));
    append(result, 2, 0);
    return result;
}

} // namespace zip_detail

/// A zip archive of @p members, in that order.
inline QByteArray zipArchive(const QList<ZipMember> &members)
{
    using namespace zip_detail;
    QByteArray body;
    QByteArray index;
    quint64 count = 0;
    for (const ZipMember &member : members) {
        // qCompress puts a length and a zlib header before the deflated bytes and a checksum behind them.
        const QByteArray zlib = member.deflated ? qCompress(member.data) : QByteArray();
        const QByteArray packed = member.deflated ? zlib.mid(6, zlib.size() - 10) : member.data;
        for (qsizetype copy = 0; copy < member.copies; ++copy, ++count) {
            const QByteArray name = member.copies == 1 ? member.name : member.name + QByteArray::number(copy);
            const QByteArray facts = zip_detail::facts(member, packed.size(), name.size());
            const auto offset = static_cast<quint64>(body.size());
            body += "PK\3\4" + facts + name + packed;
            index += QByteArray("PK\1\2\x14\3", 6) + facts; // made on Unix
            append(index, 2, 0); // comment
            append(index, 2, 0); // disk
            append(index, 2, 0);
            append(index, 4, quint64(member.mode) << 16U);
            append(index, 4, offset);
            index += name;
        }
    }
    QByteArray end("PK\5\6");
    append(end, 4, 0);
    append(end, 2, count);
    append(end, 2, count);
    append(end, 4, static_cast<quint64>(index.size()));
    append(end, 4, static_cast<quint64>(body.size()));
    append(end, 2, 0);
    return body + index + end;
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
