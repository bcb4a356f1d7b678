// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "support/servers/FaultServer.h"

#include <QSslConfiguration>
#include <QSslServer>
#include <QSslSocket>
#include <QTcpServer>
#include <QtEndian>
#include <QTimer>

#include <algorithm>
#include <sys/socket.h>
#include <zlib.h>

namespace brevok::testing {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 pieceSize = qint64{256} * 1024;

QByteArray gzipped(const QByteArray &data)
{
    // qCompress puts a length and a zlib header before the deflated bytes, and a checksum behind them.
    const QByteArray zlib = qCompress(data);
    QByteArray end(8, Qt::Uninitialized);
    const auto *bytes = reinterpret_cast<const Bytef *>(data.constData());
    qToLittleEndian(quint32(crc32(0, bytes, uInt(data.size()))), end.data());
    qToLittleEndian(quint32(data.size()), end.data() + 4);
    return QByteArray::fromHex("1f8b0800000000000003") + zlib.mid(6).chopped(4) + end;
}

} // namespace

QByteArray Request::header(const QByteArray &name) const
{
    const auto found = std::find_if(headers.cbegin(), headers.cend(),
        [&name](const auto &header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
    return found == headers.cend() ? QByteArray() : found->second;
}

Response Response::redirect(const QByteArray &location, int status)
{
    return {.status = status, .headers = {{"Location", location}}};
}

/// One connection: reads requests, writes one response at a time, piece by piece.
class FaultServer::Connection final : public QObject {
    Q_DISABLE_COPY_MOVE(Connection)

public:
    Connection(FaultServer *server, QTcpSocket *socket)
        : QObject(server)
        , m_server(server)
        , m_socket(socket)
    {
        socket->setParent(this);
        connect(socket, &QTcpSocket::readyRead, this, &Connection::read);
        connect(socket, &QTcpSocket::disconnected, this, &QObject::deleteLater);
        connect(socket, &QTcpSocket::bytesWritten, this, &Connection::write);
        if (auto *secure = qobject_cast<QSslSocket *>(socket)) {
            connect(secure, &QSslSocket::encryptedBytesWritten, this, &Connection::write);
        }
        read();
    }
    ~Connection() override { m_socket->disconnect(this); }

private:
    void read()
    {
        m_input += m_socket->readAll();
        const qsizetype end = m_input.indexOf("\r\n\r\n");
        if (m_busy || end < 0) {
            return;
        }
        const QList<QByteArray> lines = m_input.first(end).split('\n');
        const QList<QByteArray> words = lines.first().trimmed().split(' ');
        Request request{
            .method = words.value(0), .path = {}, .target = words.value(1), .headers = {}, .body = {}};
        request.path = QUrl::fromEncoded(request.target).path();
        for (const QByteArray &line : lines.sliced(1)) {
            const qsizetype colon = line.indexOf(':');
            request.headers.append(
                {line.first(std::max(colon, qsizetype(0))), line.sliced(colon + 1).trimmed()});
        }
        const qsizetype length = request.header("Content-Length").toLongLong();
        if (m_input.size() < end + 4 + length) {
            return;
        }
        request.body = m_input.sliced(end + 4, length);
        m_input.remove(0, end + 4 + length);
        m_busy = true;
        start(m_server->answer(request));
    }

    void start(const Response &response)
    {
        m_response = response;
        m_piece = response.gzip ? gzipped(response.body) : response.body;
        m_total = m_piece.size() * response.repeat;
        m_sent = 0;
        QTimer::singleShot(response.delayMs, this, [this] {
            if (!m_response.raw.isEmpty()) {
                m_socket->write(m_response.raw);
                if (m_response.fault == Response::Fault::None) {
                    m_socket->disconnectFromHost();
                } else {
                    failOnceSent();
                }
            } else if (m_response.fault != Response::Fault::None && m_response.faultAfter < 0) {
                fail();
            } else {
                m_socket->write(head());
                m_writing = true;
                write();
            }
        });
    }

    QByteArray head() const
    {
        QByteArray text = "HTTP/1.1 " + QByteArray::number(m_response.status) + " Status\r\n";
        for (const auto &[name, value] : m_response.headers) {
            text += name + ": " + value + "\r\n";
        }
        if (m_response.gzip) {
            text += "Content-Encoding: gzip\r\n";
        }
        if (m_response.framing == Response::Framing::ContentLength) {
            text += "Content-Length: " + QByteArray::number(m_total + m_response.lengthLie) + "\r\n";
        } else {
            const bool chunked = m_response.framing == Response::Framing::Chunked;
            text += chunked ? "Transfer-Encoding: chunked\r\n" : "Connection: close\r\n";
        }
        return text + "\r\n";
    }

    // Sends what fits the outgoing buffer; called again whenever some of it went out.
    void write()
    {
        const bool faulty = m_response.fault != Response::Fault::None;
        const qint64 end = faulty ? std::min(m_response.faultAfter, m_total) : m_total;
        while (m_writing && m_sent < end) {
            if (unsent() > 4 * pieceSize) {
                return;
            }
            const qint64 offset = m_sent % m_piece.size();
            const bool drips = m_response.dripMs > 0;
            const qint64 most = std::min({pieceSize, end - m_sent, qint64(m_piece.size()) - offset});
            const qint64 size = drips ? 1 : most;
            writeBody(QByteArrayView(m_piece).sliced(offset, size));
            m_sent += size;
            if (drips) {
                m_writing = false;
                QTimer::singleShot(m_response.dripMs, this, [this] {
                    m_writing = true;
                    write();
                });
                return;
            }
        }
        if (m_writing && m_sent >= end) {
            m_writing = false;
            faulty ? failOnceSent() : finish();
        }
    }

    qint64 unsent() const
    {
        const auto *secure = qobject_cast<QSslSocket *>(m_socket);
        return m_socket->bytesToWrite() + (secure ? secure->encryptedBytesToWrite() : 0);
    }

    void writeBody(QByteArrayView data)
    {
        if (m_response.framing == Response::Framing::Chunked) {
            m_socket->write(QByteArray::number(data.size(), 16) + "\r\n" + data.toByteArray() + "\r\n");
        } else {
            m_socket->write(data.data(), data.size());
        }
    }

    void finish()
    {
        if (m_response.framing == Response::Framing::Chunked) {
            m_socket->write("0\r\n\r\n");
        }
        if (m_response.framing == Response::Framing::UntilClose) {
            m_socket->disconnectFromHost();
            return;
        }
        m_busy = false;
        QMetaObject::invokeMethod(this, &Connection::read, Qt::QueuedConnection);
    }

    // A reset throws away what the system has not sent: the body so far has to be out before.
    void failOnceSent()
    {
        if (unsent() > 0) {
            m_socket->flush();
            QTimer::singleShot(1, this, &Connection::failOnceSent);
            return;
        }
        QTimer::singleShot(m_response.raw.isEmpty() ? 50 : 1, this, &Connection::fail);
    }

    void fail()
    {
        if (m_response.fault == Response::Fault::Close) {
            m_socket->disconnectFromHost();
        } else if (m_response.fault == Response::Fault::Reset) {
            // A close with a zero linger time sends a reset.
            const linger now = {.l_onoff = 1, .l_linger = 0};
            ::setsockopt(int(m_socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &now, sizeof now);
            m_socket->abort();
        }
    }

    FaultServer *m_server;
    QTcpSocket *m_socket;
    QByteArray m_input;
    bool m_busy = false;
    bool m_writing = false;
    Response m_response;
    QByteArray m_piece;
    qint64 m_total = 0;
    qint64 m_sent = 0;
};

FaultServer::FaultServer(const TestIdentity &identity)
    : m_scheme(u"https"_s)
{
    auto *server = new QSslServer(this);
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(identity.certificate);
    configuration.setPrivateKey(identity.key);
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    server->setSslConfiguration(configuration);
    listen(server);
}

FaultServer::FaultServer(Plain)
    : m_scheme(u"http"_s)
{
    listen(new QTcpServer(this));
}

FaultServer::~FaultServer()
{
    stop();
}

void FaultServer::listen(QTcpServer *server)
{
    m_server = server;
    connect(server, &QTcpServer::pendingConnectionAvailable, this, &FaultServer::accept);
    if (!server->listen(QHostAddress::LocalHost)) {
        qFatal("The test's server cannot listen: %s", qPrintable(server->errorString()));
    }
    m_port = server->serverPort();
}

void FaultServer::accept()
{
    while (QTcpSocket *socket = m_server->nextPendingConnection()) {
        new Connection(this, socket);
    }
}

Response FaultServer::answer(const Request &request)
{
    m_requests.append(request);
    const Handler handler = m_handlers.value(request.path);
    return handler ? handler(request) : Response::of(404, "nothing here");
}

void FaultServer::on(const QString &path, const Response &response)
{
    on(path, [response](const Request &) { return response; });
}

void FaultServer::on(const QString &path, const Handler &handler)
{
    m_handlers.insert(path, handler);
}

QUrl FaultServer::url(const QString &path) const
{
    return QUrl(u"%1://localhost:%2%3"_s.arg(m_scheme).arg(m_port).arg(path));
}

QList<Request> FaultServer::requests(const QString &path) const
{
    QList<Request> found;
    std::copy_if(m_requests.cbegin(), m_requests.cend(), std::back_inserter(found),
        [&path](const Request &request) { return request.path == path; });
    return found;
}

qsizetype FaultServer::connections() const
{
    const QObjectList all = children();
    return std::count_if(all.cbegin(), all.cend(),
        [](QObject *child) { return dynamic_cast<Connection *>(child) != nullptr; });
}

void FaultServer::stop()
{
    m_server->close();
    const QObjectList all = children();
    for (QObject *child : all) {
        delete dynamic_cast<Connection *>(child);
    }
}

} // namespace brevok::testing
