// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <sodium.h>

namespace brevok::testing {

/// Who signs.
struct SampleMaker {
    QByteArray publicKey = QByteArray(crypto_sign_PUBLICKEYBYTES, '\0');
    QByteArray secretKey = QByteArray(crypto_sign_SECRETKEYBYTES, '\0');

    SampleMaker()
    {
        if (sodium_init() < 0
            || crypto_sign_keypair(
                   reinterpret_cast<uchar *>(publicKey.data()), reinterpret_cast<uchar *>(secretKey.data()))
                != 0) {
            qFatal("libsodium does not work");
        }
    }

    [[nodiscard]] QByteArray sign(const QByteArray &data) const
    {
        QByteArray signature(crypto_sign_BYTES, '\0');
        crypto_sign_detached(reinterpret_cast<uchar *>(signature.data()), nullptr,
            reinterpret_cast<const uchar *>(data.constData()), static_cast<unsigned long long>(data.size()),
            reinterpret_cast<const uchar *>(secretKey.constData()));
        return signature.toBase64();
    }
};

/// What is signed.
inline QByteArray samplePackage()
{
    QByteArray package = "!<arch>\n";
    for (quint32 seed = 3; package.size() < 300000; seed = seed * 1664525 + 1013904223) {
        package += QByteArray::number(seed >> 4, 36);
    }
    return package;
}

} // namespace brevok::testing
