// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Log.h"
#include "service/ServiceCookies.h"
#include "support/Table.h"

#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;

class CookiesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cookies_data()
    {
        const testing::Table<QList<QByteArray>, QByteArray> row;
        row("several", {"a=1", "b=\"2\"; Secure; HttpOnly"}, "a=1; b=\"2\"");
        row("again", {"a=1; Path=/", "a=2; Path=/"}, "a=2");
        row("another path", {"a=1; Path=/elsewhere", "b=2; Path=/api/pl", "c=3; Path=/api"}, "c=3");
        row("none of ours", {"SessionId=planted"}, "");
        row("no cookies", {"", "=1", ";"}, "");
        row("ends at once",
            {"a=1", "a=; Max-Age=0", "b=1; Max-Age=60; Expires=Sun, 06 Nov 1994 08:49:37 GMT"}, "b=1");
        row("ended",
            {"a=1; Expires=Sun, 06 Nov 1994 08:49:37 GMT", "b=1; Expires=Sun, 06-Nov-1994 08:49:37 GMT",
                "c=1; Expires=whenever", "d=1; Expires=Sun, 06 Nov 2094 08:49:37 GMT"},
            "c=1; d=1");
        row("too large", {"a=" + QByteArray(5000, 'x'), "b=1"}, "b=1");
        row("a control character", {"a=1\r2", "b=\x1b", "c=1"}, "c=1");
    }

    void cookies()
    {
        const auto [set, sent] = testing::columns<QList<QByteArray>, QByteArray>();
        const QUrl url(u"https://service.example/api/plugins"_s);
        ServiceCookies cookies;
        for (const QByteArray &line : set) {
            cookies.take({{"set-cookie", line}}, url);
        }
        QCOMPARE(cookies.headerFor(url), sent);
    }

    // However often the service sets others.
    void cookiesStayHidden()
    {
        const QUrl url(u"https://service.example/"_s);
        ServiceCookies cookies;
        cookies.take({{"Set-Cookie", "lb=node-of-the-first"}, {"Set-Cookie", "lang=xx"}}, url);
        for (int i = 0; i < 100; ++i) {
            cookies.take({{"Set-Cookie", "turn=" + QByteArray::number(1000000 + i)}}, url);
        }
        QCOMPARE(messageForLog(QString::fromLatin1(cookies.headerFor(url))),
            u"lb=(not logged); lang=(not logged); turn=(not logged)"_s);
    }
};

QTEST_GUILESS_MAIN(CookiesTest)
#include "test_cookies.moc"
