// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "updates/PackageSignature.h"

#include <sodium.h>

namespace brevok {

namespace {

static_assert(publicKeySize == crypto_sign_PUBLICKEYBYTES && signatureSize == crypto_sign_BYTES);

QByteArray decoded(const QByteArray &base64, qsizetype size)
{
    const auto result =
        QByteArray::fromBase64Encoding(base64.trimmed(), QByteArray::AbortOnBase64DecodingErrors);
    return result && result.decoded.size() == size ? result.decoded : QByteArray();
}

const uchar *bytes(const QByteArray &data)
{
    return reinterpret_cast<const uchar *>(data.constData());
}

} // namespace

QByteArray publicKeyFrom(const QByteArray &base64)
{
    return decoded(base64, publicKeySize);
}

QByteArray signatureFrom(const QByteArray &base64)
{
    return decoded(base64, signatureSize);
}

bool isSigned(const uchar *data, qint64 size, const QByteArray &signature, const QByteArray &publicKey)
{
    return sodium_init() >= 0 && data != nullptr && size >= 0 && signature.size() == signatureSize
        && publicKey.size() == publicKeySize
        && crypto_sign_verify_detached(
               bytes(signature), data, static_cast<unsigned long long>(size), bytes(publicKey))
        == 0;
}

} // namespace brevok
