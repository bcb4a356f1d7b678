// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "support/SampleBundles.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QRegularExpression>
#include <QSslConfiguration>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;
using namespace brevok::testing;

namespace {

const QString password = u"analytical-engine"_s;

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct Answer {
    int status = 0;
    QByteArray body;
    QByteArray tag{};

    [[nodiscard]] QJsonObject object() const { return QJsonDocument::fromJson(body).object(); }
    [[nodiscard]] int errorCode() const { return object().value(u"ErrorCode"_s).toInt(-1); }
};

/// The program as a process over a scratch folder, and a client that trusts its authority alone.
class Service final {
public:
    ~Service() { stop(); }

    bool start()
    {
        m_process.start(QStringLiteral(DEMO_SERVICE_PROGRAM), {u"--root"_s, path({}), u"--tls"_s, tls()});
        while (m_process.state() != QProcess::NotRunning && !m_process.canReadLine()) {
            m_process.waitForReadyRead();
        }
        m_firstLine = m_process.readLine();
        const QJsonObject facts = QJsonDocument::fromJson(m_firstLine).object();
        m_url = facts.value(u"url"_s).toString();
        m_authorities = QSslCertificate::fromPath(facts.value(u"ca"_s).toString());
        return !m_url.isEmpty() && !m_authorities.isEmpty();
    }

    /// @return the exit status
    int stop()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.terminate();
            m_process.waitForFinished();
        }
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

    QNetworkReply *send(const QByteArray &method, const QString &target, const QByteArray &body = {},
        const QByteArray &cookie = {}, const QByteArray &knownTag = {})
    {
        QNetworkRequest request(QUrl(target.startsWith(u'/') ? m_url + target : target));
        QSslConfiguration tlsConfiguration = request.sslConfiguration();
        tlsConfiguration.setCaCertificates(m_authorities);
        request.setSslConfiguration(tlsConfiguration);
        request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json"_ba);
        request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        if (!cookie.isEmpty()) {
            request.setRawHeader("Cookie"_ba, cookie);
        }
        if (!knownTag.isEmpty()) {
            request.setRawHeader("If-None-Match"_ba, knownTag);
        }
        return m_manager.sendCustomRequest(request, method, body);
    }

    Answer ask(const QByteArray &method, const QString &target, const QByteArray &body = {},
        const QByteArray &cookie = {}, const QByteArray &knownTag = {})
    {
        const std::unique_ptr<QNetworkReply> reply(send(method, target, body, cookie, knownTag));
        if (!QTest::qWaitFor([&reply] { return reply->isFinished(); }, 30000)) {
            return {};
        }
        return {.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
            .body = reply->readAll(),
            .tag = reply->rawHeader("ETag"_ba)};
    }

    QJsonArray list(const QString &target)
    {
        return QJsonDocument::fromJson(ask("GET", target).body).array();
    }

    [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(u"root/"_s + name); }
    [[nodiscard]] QString tls() const { return m_folder.filePath(u"tls"_s); }
    [[nodiscard]] QByteArray firstLine() const { return m_firstLine; }
    [[nodiscard]] QString url() const { return m_url; }
    [[nodiscard]] QByteArray standardError() { return m_process.readAllStandardError(); }

private:
    QTemporaryDir m_folder;
    QProcess m_process;
    QNetworkAccessManager m_manager;
    QByteArray m_firstLine;
    QString m_url;
    QList<QSslCertificate> m_authorities;
};

/// Whether the program ends with @p status and one line on standard error that holds @p text.
bool refuses(const QStringList &arguments, int status, const QString &text)
{
    QProcess process;
    process.start(QStringLiteral(DEMO_SERVICE_PROGRAM), arguments);
    process.waitForFinished();
    const QString line = QString::fromUtf8(process.readAllStandardError());
    const bool refused = process.exitStatus() == QProcess::NormalExit && process.exitCode() == status
        && line.count(u'\n') == 1 && line.contains(text) && process.readAllStandardOutput().isEmpty();
    if (!refused) {
        qInfo().noquote() << "exit status" << process.exitCode() << line;
    }
    return refused;
}

} // namespace

class TestDemoService final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void unusableOptionsTouchNothing_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("named");
        QTest::newRow("unknown") << QStringList{u"--root"_s, u"data"_s, u"--colour"_s} << u"colour"_s;
        QTest::newRow("no root") << QStringList{u"--port"_s, u"0"_s} << u"--root"_s;
        QTest::newRow("empty root") << QStringList{u"--root"_s, QString()} << u"--root"_s;
        QTest::newRow("root is a file") << QStringList{u"--root"_s, u"file"_s} << u"'file'"_s;
        QTest::newRow("port is text")
            << QStringList{u"--root"_s, u"data"_s, u"--port"_s, u"x1"_s} << u"'x1'"_s;
        QTest::newRow("port too high")
            << QStringList{u"--root"_s, u"data"_s, u"--port=65536"_s} << u"'65536'"_s;
        QTest::newRow("value missing") << QStringList{u"--root"_s, u"data"_s, u"--tls"_s} << u"tls"_s;
        QTest::newRow("argument") << QStringList{u"--root"_s, u"data"_s, u"more"_s} << u"'more'"_s;
    }

    void unusableOptionsTouchNothing()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, named);
        const QTemporaryDir folder;
        QVERIFY(writeFile(folder.filePath(u"file"_s), "kept"));
        const QString before = QDir::currentPath();
        QDir::setCurrent(folder.path());
        const bool refused = refuses(arguments, 2, named);
        QDir::setCurrent(before);
        QVERIFY(refused);
        QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), {u"file"_s});
    }

    void faultsAtStart()
    {
        const QTemporaryDir folder;
        const QString root = folder.filePath(u"root"_s);
        QVERIFY(writeFile(folder.filePath(u"file"_s), "kept"));
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress::LocalHost));
        const QString taken = QString::number(other.serverPort());
        QVERIFY(refuses({u"--root"_s, root, u"--port"_s, taken}, 1, taken));
        const QString impossible = folder.filePath(u"file/folder"_s);
        QVERIFY(refuses({u"--root"_s, impossible}, 1, impossible));
        QVERIFY(refuses({u"--root"_s, root, u"--tls"_s, impossible}, 1, impossible));
    }

    void certificatesAreKeptWhileUsable()
    {
        Service service;
        QVERIFY(service.start());
        static const QRegularExpression line(
            u"^\\{\"url\": \"https://localhost:\\d+\", \"ca\": \"/.+/tls/ca\\.pem\"\\}\n$"_s);
        QVERIFY2(
            line.match(QString::fromUtf8(service.firstLine())).hasMatch(), service.firstLine().constData());
        const QFileDevice::Permissions key = QFile::permissions(service.tls() + u"/key.pem"_s);
        QVERIFY(!(key & (QFileDevice::ReadGroup | QFileDevice::ReadOther)));
        QCOMPARE(service.ask("GET", u"/"_s).status, 200);
        QVERIFY(!service.ask("POST", u"/"_s).body.isEmpty());
        QCOMPARE(
            service.ask("GET", QString(service.url()).replace(u"localhost"_s, u"127.0.0.1"_s)).status, 200);
        QCOMPARE(service.stop(), 0);

        const QString authority = service.tls() + u"/ca.pem"_s;
        const QByteArray first = readFile(authority);
        QVERIFY(service.start());
        QCOMPARE(readFile(authority), first);
        QCOMPARE(service.stop(), 0);
        QVERIFY(writeFile(service.tls() + u"/cert.pem"_s, "no certificate"));
        QVERIFY(service.start());
        QVERIFY(readFile(authority) != first);
        QCOMPARE(service.ask("GET", u"/"_s).status, 200);
    }

    void accounts_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("errorCode");
        const auto body = [](const QString &email, const QJsonValue &word) {
            return QJsonDocument(QJsonObject{{u"email"_s, email}, {u"password"_s, word}}).toJson();
        };
        QTest::newRow("right") << body(u"ada@example.com"_s, password) << 0;
        QTest::newRow("address in capitals") << body(u"Ada@Example.com"_s, password) << 0;
        QTest::newRow("wrong password") << body(u"ada@example.com"_s, u"x"_s) << 2;
        QTest::newRow("no password") << body(u"ada@example.com"_s, QString()) << 2;
        QTest::newRow("unknown account") << body(u"bob@example.com"_s, password) << 2;
        QTest::newRow("not JSON") << "password=analytical-engine"_ba << 1;
    }

    void accounts()
    {
        QFETCH(QByteArray, body);
        QFETCH(int, errorCode);
        Service service;
        QVERIFY(service.start());
        const Answer signedIn = service.ask("POST", u"/api/machine/signin"_s, body);
        QCOMPARE(signedIn.errorCode(), errorCode);
        const QString session = signedIn.object().value(u"SessionId"_s).toString();
        QCOMPARE(session.isEmpty(), errorCode != 0);
        const QByteArray cookie = "SessionId=" + session.toLatin1();
        const QString signOut = u"/api/machine/signout"_s;
        QCOMPARE(service.ask("POST", signOut, {}, cookie).errorCode(), errorCode == 0 ? 0 : 3);
        QCOMPARE(service.ask("POST", signOut, {}, cookie).errorCode(), 3);
        const QByteArray log = readFile(service.path(u"requests.jsonl"_s));
        QVERIFY(!log.contains(password.toLatin1()));
        QVERIFY(session.isEmpty() || !log.contains(session.toLatin1()));
    }

    void catalogueIsWhole()
    {
        Service service;
        QVERIFY(service.start());
        QSet<QString> prefixes;
        int foreign = 0;
        for (const QJsonValue package : service.list(u"/api/product/list"_s)) {
            foreign += package[u"Platform"_s] != u"Mac"_s;
            for (const QString &key : {u"Name"_s, u"Prefix"_s, u"Version"_s, u"Published"_s}) {
                QVERIFY2(!package[key].toString().isEmpty(), qPrintable(key));
            }
            prefixes.insert(package[u"Prefix"_s].toString());
            if (const QString icon = package[u"Icon"_s].toString(); !icon.isEmpty()) {
                QVERIFY(service.ask("GET", icon).body.startsWith("\x89PNG\r\n\x1a\n"));
            }
            if (package[u"Platform"_s] == u"Mac"_s) {
                QVERIFY(service.ask("GET", package[u"Info"_s].toString()).body.contains("<h1>"));
            }
        }
        QCOMPARE(foreign, 1);
        QCOMPARE(prefixes.size(), 12);

        QSet<QString> offered;
        QHash<QString, qint64> sizes;
        QHash<QString, QString> checksums;
        for (const QJsonValue build : service.list(u"/api/plugin/list"_s)) {
            for (const QString &key : {u"Name"_s, u"Prefix"_s, u"Version"_s, u"Published"_s, u"Link"_s}) {
                QVERIFY2(!build[key].toString().isEmpty(), qPrintable(key));
            }
            QVERIFY(build[u"Size"_s].isDouble() && build[u"HostVersion"_s].isDouble());
            if (build[u"Platform"_s] == u"Mac"_s) {
                offered.insert(build[u"Prefix"_s].toString());
                sizes.insert(build[u"Link"_s].toString(), build[u"Size"_s].toInteger());
                checksums.insert(build[u"Link"_s].toString(), build[u"SHA256"_s].toString());
            }
        }
        QCOMPARE(offered, prefixes);
        int redirected = 0;
        for (auto archive = sizes.cbegin(); archive != sizes.cend(); ++archive) {
            redirected += archive.key().contains(u"/download/"_s);
            const QByteArray body = service.ask("GET", archive.key()).body;
            QCOMPARE(qint64{body.size()}, archive.value());
            QCOMPARE(checksums.value(archive.key()).toLatin1(),
                QCryptographicHash::hash(body, QCryptographicHash::Sha256).toHex());
        }
        QCOMPARE(redirected, 1);
    }

    void archiveHoldsABundle()
    {
        Service service;
        QVERIFY(service.start());
        QProcess tar;
        tar.start(u"bsdtar"_s,
            {u"-xf"_s, service.path(u"archives/163/corvell-tables-4.2.1.zip"_s), u"-C"_s,
                service.path(QString())});
        QVERIFY(tar.waitForFinished() && tar.exitCode() == 0);
        const QString contents = service.path(u"Corvell Tables.InDesignPlugin/Contents/"_s);
        const QByteArray list = readFile(contents + u"Info.plist"_s).simplified();
        const auto facts = {"<key>CFBundleExecutable</key> <string>Corvell Tables</string>",
            "<key>CFBundleShortVersionString</key> <string>4.2.1 (build 77)</string>",
            "<key>CFBundleShortVersionStringTemplate</key> <string>4.2.1</string>",
            "<key>TolvaneHostAppShortVersion</key> <string>16.3</string>"};
        for (const char *const fact : facts) {
            QVERIFY2(list.contains(fact), fact);
        }
        QCOMPARE(QFileInfo(contents + u"MacOS/Corvell Tables"_s).size(), 220 * 1024);
    }

    void listsAreReadAgain()
    {
        Service service;
        QVERIFY(service.start());
        const QString target = u"/api/plugin/list"_s;
        const QString file = service.path(u"plugins.json"_s);
        // Texts stand apart from the macros, in which moc stumbles over them.
        const QByteArray links = R"([{"Link":"/a.zip"},{"Link":"https://example.com/b.zip"},7])";
        const QByteArray noList = R"({"not":"a list"})";
        const QByteArray noJson = R"([{"Name":)";
        QVERIFY(writeFile(file, links));
        const QJsonDocument expected =
            QJsonDocument::fromJson(QByteArray(links).replace("/a.zip", service.url().toLatin1() + "/a.zip"));
        QCOMPARE(QJsonDocument::fromJson(service.ask("GET", target).body), expected);
        QVERIFY(writeFile(file, noList));
        QCOMPARE(service.ask("GET", target).body, noList);
        QCOMPARE(service.standardError(), QByteArray());
        QVERIFY(writeFile(file, noJson));
        QCOMPARE(service.ask("GET", target).status, 500);
        QVERIFY(QFile::remove(file));
        const Answer missing = service.ask("GET", target);
        QCOMPARE(missing.status, 500);
        QCOMPARE(missing.errorCode(), 99);
        QCOMPARE(service.ask("GET", u"/api/product/list"_s).status, 200);
        service.stop();
        QCOMPARE(service.standardError().count("plugins.json"), 2);
        QVERIFY2(
            service.start() && !QFile::exists(file), "a catalogue that somebody has edited is made again");
    }

    void whatAClientHasIsNotSentAgain()
    {
        Service service;
        QVERIFY(service.start());
        const QString icon = service.list(u"/api/product/list"_s)[0][u"Icon"_s].toString();
        const QString iconFile = service.path(QUrl(icon).path());
        for (const QString &target : {u"/api/plugin/list"_s, u"/api/product/list"_s, icon}) {
            const Answer first = service.ask("GET", target);
            QVERIFY(!first.tag.isEmpty() && !first.body.isEmpty());
            const Answer again = service.ask("GET", target, {}, {}, "\"other\", W/" + first.tag);
            QCOMPARE(again.status, 304);
            QCOMPARE(again.body, QByteArray());
            QCOMPARE(again.tag, first.tag);
            QCOMPARE(service.ask("GET", target, {}, {}, "\"other\"").body, first.body);
            const QString file =
                target == icon ? iconFile : service.path(target.section(u'/', 2, 2) + u"s.json"_s);
            QVERIFY(writeFile(file, "[\"another\"]"));
            const Answer changed = service.ask("GET", target, {}, {}, first.tag);
            QCOMPARE(changed.status, 200);
            QVERIFY(changed.tag != first.tag);
        }
    }

    void onlyFilesOfTheCatalogueAreServed_data()
    {
        QTest::addColumn<QString>("target");
        QTest::newRow("parent") << u"/archives/../accounts.json"_s;
        QTest::newRow("encoded parent") << u"/icons/%2e%2e%2faccounts.json"_s;
        QTest::newRow("absolute") << u"/archives//etc/hostname"_s;
        QTest::newRow("link outwards") << u"/archives/link.zip"_s;
        QTest::newRow("folder") << u"/archives/140"_s;
        QTest::newRow("neighbour") << u"/accounts.json"_s;
        QTest::newRow("missing") << u"/icons/none.png"_s;
        QTest::newRow("redirected parent") << u"/download/../accounts.json"_s;
    }

    void onlyFilesOfTheCatalogueAreServed()
    {
        QFETCH(QString, target);
        Service service;
        QVERIFY(service.start());
        QVERIFY(QFile::link(service.path(u"accounts.json"_s), service.path(u"archives/link.zip"_s)));
        const Answer answer = service.ask("GET", target);
        QCOMPARE(answer.status, 404);
        QVERIFY(!answer.body.contains(password.toLatin1()));
    }

    void requestsAreRecorded()
    {
        Service service;
        QVERIFY(service.start());
        const QByteArray cookie = "theme=dark; SessionId=0123456789abcdefghij";
        const QByteArray report = R"({"Installed":[{"Password":"x"}]})";
        QCOMPARE(service.ask("POST", u"/api/stats/plugins"_s, report, cookie).errorCode(), 0);
        QCOMPARE(service.ask("POST", u"/api/machine/report?a=b"_s, "password is secret").errorCode(), 0);
        const QList<QByteArray> lines = readFile(service.path(u"requests.jsonl"_s)).trimmed().split('\n');
        QCOMPARE(lines.size(), 2);
        const QJsonObject first = QJsonDocument::fromJson(lines[0]).object();
        QCOMPARE(first.value(u"method"_s).toString(), u"POST"_s);
        QCOMPARE(first.value(u"path"_s).toString(), u"/api/stats/plugins"_s);
        QCOMPARE(first.value(u"session"_s).toString(), u"unknown"_s);
        QCOMPARE(first[u"headers"_s][u"cookie"_s].toString(), u"theme=dark; SessionId=0123…ghij"_s);
        QCOMPARE(first[u"body"_s][u"Installed"_s][0][u"Password"_s].toString(), u"…"_s);
        const QJsonObject second = QJsonDocument::fromJson(lines[1]).object();
        QCOMPARE(second.value(u"path"_s).toString(), u"/api/machine/report?a=b"_s);
        QCOMPARE(second.value(u"bodyLength"_s).toInt(), 18);
        QVERIFY(!second.contains(u"body"_s));
    }

    void clientThatBreaksOffHarmsNobody()
    {
        Service service;
        QVERIFY(service.start());
        const QByteArray archive(qsizetype{32} * 1024 * 1024, 'z');
        QVERIFY(writeFile(service.path(u"archives/large.zip"_s), archive));
        for (int i = 0; i < 5; ++i) {
            const std::unique_ptr<QNetworkReply> reply(service.send("GET", u"/archives/large.zip"_s));
            reply->setReadBufferSize(4096);
            QTRY_VERIFY(reply->bytesAvailable() > 0);
            reply->abort();
        }
        QVERIFY(service.ask("GET", u"/archives/large.zip"_s).body == archive);
        QCOMPARE(service.stop(), 0);
    }
};

QTEST_GUILESS_MAIN(TestDemoService)
#include "test_demo_service.moc"
