// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

namespace brevok {

inline constexpr qsizetype publicKeySize = 32;
inline constexpr qsizetype signatureSize = 64;

/// The ed25519 public key that @p base64 holds; empty when it holds none.
[[nodiscard]] QByteArray publicKeyFrom(const QByteArray &base64);

/// The ed25519 signature that @p base64 holds; empty when it holds none.
[[nodiscard]] QByteArray signatureFrom(const QByteArray &base64);

/// Whether the owner of @p publicKey signed exactly these @p size bytes. Any thread.
[[nodiscard]] bool isSigned(
    const uchar *data, qint64 size, const QByteArray &signature, const QByteArray &publicKey);

} // namespace brevok
