// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/ServiceCookies.h"

#include "foundation/Secrets.h"
#include "foundation/UntrustedText.h"
#include "service/HttpDate.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr auto sessionCookie = "SessionId";
constexpr qsizetype longestCookie = 4096;
constexpr qsizetype mostCookies = 50;
constexpr qsizetype longestHeader = 8192; // what servers take

QByteArray defaultPath(const QUrl &url)
{
    const QByteArray path = url.path(QUrl::FullyEncoded).toLatin1();
    const qsizetype end = path.lastIndexOf('/');
    return end > 0 ? path.first(end) : "/"_ba;
}

bool pathMatches(const QByteArray &cookie, const QByteArray &path)
{
    return path == cookie || cookie == "/" || path.startsWith(cookie.endsWith('/') ? cookie : cookie + '/');
}

} // namespace

void ServiceCookies::take(const HeaderFields &headers, const QUrl &url)
{
    for (const auto &[name, line] : headers) {
        // What could not travel in a header would shut out the others, the session's too.
        if (name.compare("Set-Cookie", Qt::CaseInsensitive) != 0 || line.size() > longestCookie
            || !isHarmless(QString::fromUtf8(line))) {
            continue;
        }
        QList<QByteArray> parts = line.split(';');
        const QByteArray pair = parts.takeFirst().trimmed();
        const qsizetype equals = pair.indexOf('=');
        Cookie cookie{pair.first(std::max(equals, qsizetype(0))).trimmed(), pair.sliced(equals + 1).trimmed(),
            defaultPath(url), {}};
        keepCookieSecret(cookie.value);
        bool ageGiven = false;
        for (const QByteArray &part : parts) {
            const qsizetype at = part.indexOf('=');
            const QByteArray key = part.first(at < 0 ? part.size() : at).trimmed().toLower();
            const QByteArray value = at < 0 ? QByteArray() : part.sliced(at + 1).trimmed();
            if (key == "path" && value.startsWith('/')) {
                cookie.path = value;
            } else if (key == "max-age") {
                cookie.expires = QDateTime::currentDateTimeUtc().addSecs(value.toLongLong());
                ageGiven = true;
            } else if (key == "expires" && !ageGiven) {
                cookie.expires = httpDate(value);
            }
        }
        if (!cookie.name.isEmpty() && cookie.name != sessionCookie) {
            keep(std::move(cookie));
        }
    }
    // What is sent again and again stays hidden, however often others change.
    for (const Cookie &cookie : std::as_const(m_cookies)) {
        keepCookieSecret(cookie.value);
    }
}

void ServiceCookies::keep(Cookie cookie)
{
    m_cookies.removeIf(
        [&cookie](const Cookie &old) { return old.name == cookie.name && old.path == cookie.path; });
    if (!cookie.expires.isValid() || cookie.expires > QDateTime::currentDateTimeUtc()) {
        m_cookies.append(std::move(cookie));
    }
    if (m_cookies.size() > mostCookies) {
        m_cookies.removeFirst();
    }
}

QByteArray ServiceCookies::headerFor(const QUrl &url) const
{
    const QByteArray path = url.path(QUrl::FullyEncoded).toLatin1();
    const QDateTime now = QDateTime::currentDateTimeUtc();
    QByteArray header;
    for (const Cookie &cookie : m_cookies) {
        const QByteArray pair = cookie.name + '=' + cookie.value;
        const bool lives = !cookie.expires.isValid() || cookie.expires > now;
        if (lives && pathMatches(cookie.path, path) && header.size() + pair.size() < longestHeader) {
            header += (header.isEmpty() ? "" : "; ") + pair;
        }
    }
    return header;
}

} // namespace brevok
