// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/Secrets.h"
#include "foundation/UntrustedText.h"
#include "support/InRow.h"
#include "support/Spellings.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::InRow;

class UntrustedTextTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void texts()
    {
        const QList<std::tuple<const char *, QString, QString, QString>> rows{
            {"escape sequence", u"a\x1b[2Jb"_s, u"a [2Jb"_s, u"a [2Jb"_s},
            {"bell, NUL, delete", u"a\ab\0c\x7f"_s, u"a b c "_s, u"a b c "_s},
            {"controls beyond ASCII", u"a\u009b31mb"_s, u"a 31mb"_s, u"a 31mb"_s},
            {"lines", u"a\nb\r\nc\rd"_s, u"a b  c d"_s, u"a\nb\nc\nd"_s},
            {"rare line breaks", u"a\u0085b\u2028c\u2029d\ve\ff"_s, u"a b c d e f"_s, u"a\nb\nc\nd\ne\nf"_s},
            {"tab", u"a\tb"_s, u"a b"_s, u"a\tb"_s},
            {"overrides", u"evil\u202Egpj.exe\u202C"_s, u"evilgpj.exe"_s, u"evilgpj.exe"_s},
            {"isolates and marks", u"\u2066a\u2069\u200Eb\u200Fc\u061Cd"_s, u"abcd"_s, u"abcd"_s},
            {"half pairs", u"a"_s + QChar(0xD83D) + u"b"_s + QChar(0xDE00), u"a\uFFFDb\uFFFD"_s,
                u"a\uFFFDb\uFFFD"_s},
        };
        for (const auto &[name, text, one, several] : rows) {
            const InRow in(name);
            QCOMPARE(oneLine(text), one);
            QCOMPARE(severalLines(text), several);
            QVERIFY(!isHarmless(text) && !isPlainFileName(text));
            QVERIFY(isHarmless(one) && !isCookieValue(text));
        }
    }

    void ordinaryTextStays()
    {
        const QList<std::tuple<const char *, QString>> rows{
            {"empty", {}},
            {"European", u"Größe  «12» – naïve…"_s},
            {"Arabic", u"محرر النصوص ٢"_s},
            {"Hebrew", u"עורך (טקסט) 2.0"_s},
            {"Persian, with a joiner", u"می\u200Cخواهم"_s},
            {"emoji of several", u"👩\u200D👩\u200D👧 🏳\uFE0F\u200D🌈 👍🏽"_s},
            {"combining marks", u"e\u0301 n\u0303 अनुच्छेद"_s},
            {"Japanese", u"プラグイン 更新"_s},
        };
        for (const auto &[name, text] : rows) {
            const InRow in(name);
            QCOMPARE(oneLine(text), text);
            QCOMPARE(severalLines(text), text);
            QCOMPARE(messageForLog(text), text);
        }
    }

    void longTexts()
    {
        QCOMPARE(oneLine(u"abcdef"_s, 6), u"abcdef"_s);
        QCOMPARE(oneLine(u"abcdefg"_s, 6), u"abcde…"_s);
        QCOMPARE(severalLines(u"ab\ndefg"_s, 6), u"ab\nde…"_s);
        QCOMPARE(oneLine(u"abcd😀fg"_s, 6), u"abcd…"_s);
        QCOMPARE(oneLine(u"abcde\u0301\u0302fgh"_s, 6), u"abcd…"_s);
        QCOMPARE(oneLine(u"ab👩\u200D👩\u200D👧cdefgh"_s, 8), u"ab…"_s);
        const QString marks = u"e"_s + QString(2000, QChar(0x301));
        QCOMPARE(oneLine(marks, 1000).size(), 1000);
        QVERIFY(severalLines(QString(7'000'000, u'x')).size() <= 4000);
        QVERIFY(messageForLog(QString(7'000'000, u'\x1b')).size() < 20'000);
    }

    void cookieValues()
    {
        const QList<std::tuple<const char *, QString, bool>> rows{
            {"usual", u"0f9a-XYZ+/=_.~"_s, true},
            {"line break", u"id\r\nX-Admin: yes"_s, false},
            {"NUL", u"id\0"_s, false},
            {"second cookie", u"id; role=admin"_s, false},
            {"not ASCII", u"schlüssel"_s, false},
            {"longest", QString(4096, u'a'), true},
            {"too long", QString(4097, u'a'), false},
        };
        for (const auto &[name, value, usable] : rows) {
            const InRow in(name);
            QCOMPARE(isCookieValue(value), usable);
        }
    }

    void spellings()
    {
        for (const QString &secret : {u"hunter22"_s, u"pä\"<ß>&'wörd /+%25\\"_s, u"😀\u202E!x9 \t\n"_s,
                 u"abcd"_s, u"%41%42&amp;\\u0041"_s, u"a\uFFFDbc"_s, QString(2000, u'k') + u'7'}) {
            const QByteArray row = secret.left(12).toUtf8();
            const InRow in(row.constData());
            keepSecret(secret);
            for (const auto &[name, spelling] : testing::spellingsOf(secret)) {
                const QString text = u"The text {%1} ends."_s.arg(spelling);
                const QString shown = withoutSecrets(text);
                QVERIFY2(shown.startsWith(u"The text {"_s) && shown.endsWith(u"} ends."_s), name);
                QVERIFY2(shown.contains(u"(not logged)"_s), name);
                // What base64 leaves at the ends stands for less than a character.
                QVERIFY2(shown.size() <= u"The text {} ends.(not logged)"_s.size() + 28,
                    qPrintable(QLatin1String(name) + shown));
                QVERIFY2(!shown.contains(spelling), name);
            }
        }
    }

    void shortSecrets()
    {
        const QList<std::tuple<const char *, QString, QString, QString>> rows{
            {"within words", u"ba1 a12 token office"_s, u"ba1 a12 token office"_s, u"ba1 a12 token office"_s},
            {"a sentence", u"a1 of 7q, no"_s, u"* * 7q, no"_s, u"a1 of 7q, no"_s},
            {"JSON", u"{\"p\":\"a1\", \"c\": \"7q\"}"_s, u"{\"p\":\"*\", \"c\": \"*\"}"_s,
                u"{\"p\":\"*\", \"c\": \"*\"}"_s},
            {"JSON in JSON", u"\\u0022of\\u0022 \\\"7q\\\""_s, u"\\u0022*\\u0022 \\\"*\\\""_s,
                u"\\u0022*\\u0022 \\\"*\\\""_s},
            {"letters in numbers", u"\"\\u0061\\u0031\" '&#97;&#49;'"_s, u"\"*\" '*'"_s, u"\"*\" '*'"_s},
            {"HTML", u"&quot;7q&quot; &#34;a1&#34;"_s, u"&quot;*&quot; &#34;*&#34;"_s,
                u"&quot;*&quot; &#34;*&#34;"_s},
            {"address", u"?p=a1&c=7q %22a%31%22%3A7q"_s, u"?p=*&c=* %22*%22%3A*"_s,
                u"?p=*&c=* %22*%22%3A*"_s},
            {"header", u"Cookie: x=7q; y=of z\nX-Password: a1\r\n"_s,
                u"Cookie: x=*; y=* z\nX-Password: *\r\n"_s, u"Cookie: x=*; y=* z\nX-Password: *\r\n"_s},
            {"base64", u"Basic YWRhOmEx, YTE=, bGFuZz03cQ==, xYWRhOmEx"_s, u"Basic *, *=, *==, xYWRhOmEx"_s,
                u"Basic *, YTE=, *==, xYWRhOmEx"_s},
            {"a number of ours", u"failed: 33 with message: 33."_s, u"failed: * with message: *."_s,
                u"failed: 33 with message: 33."_s},
        };
        for (const auto &[name, text, theirs, log] : rows) {
            const InRow in(name);
            const auto hidden = [](QString pattern) {
                return pattern.replace(u'*', u"(not logged)"_s);
            };
            keepSecret(u"a1"_s);
            keepSecret(u"of"_s);
            keepSecret(u"33"_s);
            keepCookieSecret("7q");
            QCOMPARE(withoutSecrets(text), hidden(theirs));
            QCOMPARE(withoutSecrets(text, Words::OursToo), hidden(log));
        }
    }

    void fieldsThatAreNamedLikeSecrets()
    {
        const QList<std::tuple<const char *, QString>> rows{
            {"JSON", u"{\"SessionId\": \"NEW\"}"_s},
            {"JSON in JSON", u"{\"body\":\"{\\\"SessionId\\\":\\\"NEW\\\"}\"}"_s},
            {"JSON in HTML", u"&quot;sessionid&quot;:&quot;NEW&quot;}"_s},
            {"JSON in an address", u"%22password%22%3A%22NEW%22"_s},
            {"form", u"email=ada&password=NEW"_s},
            {"cookie", u"Cookie: SessionId=NEW; theme=dark"_s},
            {"cut", u"{\"SessionId\": \"NEW"_s},
        };
        for (const auto &[name, text] : rows) {
            const InRow in(name);
            const QString shown = withoutSecretFields(text);
            QCOMPARE(withoutSecrets(text), text);
            QVERIFY2(!shown.contains(u"NEW"_s) && shown.contains(u"(not logged)"_s), qPrintable(shown));
        }
    }

    void aServiceWithManyCookies()
    {
        keepSecret(u"the-session-7"_s);
        for (const char *value : {"node-one-1", "en", "", "tok=en-2", "\"quoted 3\""}) {
            keepCookieSecret(value);
        }
        QCOMPARE(withoutSecrets(u"node-one-1, tok=en-2, en, quoted 3, Secure"_s),
            u"(not logged), (not logged), en, (not logged), Secure"_s);
        for (int i = 0; i < 1000; ++i) {
            keepCookieSecret("cookie-" + QByteArray::number(i));
            keepCookieSecret("node-one-1"); // still in use
        }
        QCOMPARE(withoutSecrets(u"the-session-7 cookie-999 node-one-1"_s),
            u"(not logged) (not logged) (not logged)"_s);
    }

    // With a password that is a word of the log's, the hole would say which one.
    void ourOwnWordsTellNothing()
    {
        for (const QString &secret : {u"unexpected"_s, u"password"_s, u"c0rrect-horse"_s, u"hunter2"_s,
                 u"sunshine"_s, u"correcthorsebattery"_s}) {
            keepSecret(secret);
        }
        const QString line = u"Received 3 bytes of unexpected data; Wrong user name or password."_s;
        QCOMPARE(messageForLog(line), line);
        QCOMPARE(messageForLog(u"Location: https://gateway/?c=c0rrect%2Dhorse&p=sunshine; x is hunter2, "
                               "correcthorsebattery; X-Echo = \"unexpected\""_s),
            u"Location: https://gateway/?c=(not logged)&p=(not logged); x is (not logged), (not logged); "
            "X-Echo = \"(not logged)\""_s);
    }

    // As the programs write it, through the handler that they install.
    void theLog()
    {
        const QTemporaryDir scratch;
        const QByteArray path = QFile::encodeName(scratch.filePath(u"log"_s));
        keepSecret(u"s3cret-session"_s);
        const int file = ::open(path.constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
        const int before = ::dup(STDERR_FILENO);
        QVERIFY(file >= 0 && before >= 0);
        const QtMessageHandler handler = qInstallMessageHandler(nullptr);
        ::dup2(file, STDERR_FILENO);
        installLogFormat();
        logLine(
            u"Alert: Authentication Error\nno\x1b]0;x\a\n2026-01-01 10:00:00.000 Tolvane Brevok[1:1] Error: forged"_s);
        logLine(u"header fields: {x = \"s3cret-session\"}"_s);
        logLine(QString(1'000'000, u'm'));
        ::dup2(before, STDERR_FILENO);
        qInstallMessageHandler(handler);
        ::close(before);
        ::close(file);

        QFile log(QFile::decodeName(path));
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QByteArray written = log.readAll();
        QVERIFY(written.size() < 20'000);
        QVERIFY(!written.contains('\x1b') && !written.contains('\a') && !written.contains("s3cret-session"));
        const QList<QByteArray> lines = written.trimmed().split('\n');
        QCOMPARE(std::count_if(lines.cbegin(), lines.cend(),
                     [](const QByteArray &line) { return line.startsWith("20"); }),
            3);
        QVERIFY(lines.at(0).endsWith("] Alert: Authentication Error") && lines.at(1).startsWith("no "));
    }
};

QTEST_GUILESS_MAIN(UntrustedTextTest)
#include "test_untrusted_text.moc"
