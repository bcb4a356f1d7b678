// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/InternetAddress.h"

#include <QUrl>

#include <array>
#include <memory>

#include <arpa/inet.h>
#include <netdb.h>

namespace brevok {

namespace {

constexpr qsizetype ipv4Size = 4;
constexpr qsizetype ipv6Size = 16;

struct FreeAddresses {
    void operator()(addrinfo *list) const { ::freeaddrinfo(list); }
};

} // namespace

InternetAddress::InternetAddress(const QByteArray &bytes)
    : m_bytes(bytes.size() == ipv4Size || bytes.size() == ipv6Size ? bytes : QByteArray())
{
}

InternetAddress InternetAddress::fromText(const QString &text)
{
    const QByteArray name = text.toLatin1();
    QByteArray bytes(ipv6Size, '\0');
    if (::inet_pton(AF_INET, name.constData(), bytes.data()) == 1) {
        return InternetAddress(bytes.first(ipv4Size));
    }
    return ::inet_pton(AF_INET6, name.constData(), bytes.data()) == 1 ? InternetAddress(bytes)
                                                                      : InternetAddress();
}

InternetAddress InternetAddress::resolved(const QString &host)
{
    InternetAddress best = fromText(host);
    addrinfo *found = nullptr;
    if (!best.isNull() || ::getaddrinfo(QUrl::toAce(host).constData(), nullptr, nullptr, &found) != 0) {
        return best;
    }
    const std::unique_ptr<addrinfo, FreeAddresses> list(found);
    for (const addrinfo *one = found; one != nullptr && !best.isIpv4(); one = one->ai_next) {
        if (one->ai_family == AF_INET) {
            const auto *address = &reinterpret_cast<const sockaddr_in *>(one->ai_addr)->sin_addr;
            best = InternetAddress(QByteArray(reinterpret_cast<const char *>(address), ipv4Size));
        } else if (one->ai_family == AF_INET6 && best.isNull()) {
            const auto *address = &reinterpret_cast<const sockaddr_in6 *>(one->ai_addr)->sin6_addr;
            best = InternetAddress(QByteArray(reinterpret_cast<const char *>(address), ipv6Size));
        }
    }
    return best;
}

bool InternetAddress::isZero() const
{
    return !isNull() && m_bytes.count('\0') == m_bytes.size();
}

bool InternetAddress::isLoopback() const
{
    return isIpv4() ? m_bytes.at(0) == IN_LOOPBACKNET : *this == fromText(QStringLiteral("::1"));
}

bool InternetAddress::isWithin(const InternetAddress &network, int prefixLength) const
{
    if (m_bytes.size() != network.m_bytes.size() || prefixLength > 8 * m_bytes.size()) {
        return false;
    }
    const qsizetype whole = prefixLength / 8;
    const int rest = prefixLength % 8;
    return m_bytes.first(whole) == network.m_bytes.first(whole)
        && (rest == 0
            || ((m_bytes.at(whole) ^ network.m_bytes.at(whole)) & (0xff << (8 - rest)) & 0xff) == 0);
}

QString InternetAddress::text() const
{
    std::array<char, INET6_ADDRSTRLEN> text = {};
    if (!isNull()) {
        ::inet_ntop(isIpv4() ? AF_INET : AF_INET6, m_bytes.constData(), text.data(), text.size());
    }
    return QString::fromLatin1(text.data());
}

} // namespace brevok
