// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

namespace brevok {

/// An address of version 4 or 6, or none.
class InternetAddress final {
public:
    InternetAddress() = default;
    /// @p bytes are 4 or 16, in the network's order; none otherwise
    explicit InternetAddress(const QByteArray &bytes);
    /// None when @p text is no address.
    [[nodiscard]] static InternetAddress fromText(const QString &text);
    /// Of @p host, the first of version 4 where there is one. Blocks while the name is being resolved; any
    /// thread but the main one.
    [[nodiscard]] static InternetAddress resolved(const QString &host);

    [[nodiscard]] bool isNull() const { return m_bytes.isEmpty(); }
    [[nodiscard]] bool isIpv4() const { return m_bytes.size() == 4; }
    /// The zero address stands for the internet as such.
    [[nodiscard]] bool isZero() const;
    [[nodiscard]] bool isLoopback() const;
    /// Whether the first @p prefixLength bits are those of @p network.
    [[nodiscard]] bool isWithin(const InternetAddress &network, int prefixLength) const;
    [[nodiscard]] const QByteArray &bytes() const { return m_bytes; }
    [[nodiscard]] QString text() const;

    friend bool operator==(const InternetAddress &a, const InternetAddress &b) = default;

private:
    QByteArray m_bytes;
};

} // namespace brevok
