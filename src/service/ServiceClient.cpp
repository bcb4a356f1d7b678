// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/ServiceClient.h"

namespace brevok {

namespace {

// Whether these bytes are one DER sequence from the first to the last (X.690, 8.1.3).
bool isWholeSequence(const QByteArray &der)
{
    constexpr unsigned char sequence = 0x30;
    constexpr unsigned char longForm = 0x80;
    const auto byte = [&der](qsizetype at) {
        return static_cast<unsigned char>(der.at(at));
    };
    if (der.size() < 2 || byte(0) != sequence) {
        return false;
    }
    const qsizetype lengthBytes = byte(1) > longForm ? byte(1) - longForm : 0;
    if (lengthBytes == 0 || lengthBytes > 4 || der.size() < 2 + lengthBytes) {
        return false; // no certificate is short enough for the short form
    }
    qint64 length = 0;
    for (qsizetype i = 0; i < lengthBytes; ++i) {
        length = length * 256 + byte(2 + i);
    }
    return der.size() == 2 + lengthBytes + length;
}

} // namespace

bool holdsCertificate(const QByteArray &pem)
{
    constexpr QByteArrayView begin = "-----BEGIN CERTIFICATE-----";
    constexpr QByteArrayView end = "-----END CERTIFICATE-----";
    for (qsizetype at = pem.indexOf(begin); at >= 0; at = pem.indexOf(begin, at + 1)) {
        const qsizetype from = at + begin.size();
        const qsizetype to = pem.indexOf(end, from);
        if (to > from && isWholeSequence(QByteArray::fromBase64(pem.sliced(from, to - from)))) {
            return true;
        }
    }
    return false;
}

QUrl ServiceConfiguration::url(const QString &path) const
{
    QUrl url = baseUrl;
    QString folder = baseUrl.path();
    while (folder.endsWith(u'/')) {
        folder.chop(1);
    }
    url.setPath(folder + path);
    return url;
}

} // namespace brevok
