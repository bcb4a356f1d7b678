// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QUrl>

#include <chrono>
#include <functional>
#include <memory>

namespace brevok {

/// Names and values, in the order in which they are sent or came. A name may stand there more than once.
using HeaderFields = QList<QPair<QByteArray, QByteArray>>;

/// The value of the first field @p name, whatever its letter case; empty when there is none.
[[nodiscard]] QByteArray headerValue(const HeaderFields &fields, const QByteArray &name);

struct HttpLimits {
    qint64 headerBytes = 256LL * 1024; ///< of all heads, from the first status line on
    qint64 bodyBytes = 32LL * 1024 * 1024; ///< decompressed, where it goes to memory
    int silenceMs = 60000; ///< without any progress
    qint64 leastBytes = 1; ///< that count as progress
    int wholeMs = 300000; ///< for all of it, waiting for its turn too; 0 for no limit
};

/// One request to one host.
struct HttpRequest {
    QByteArray method = QByteArrayLiteral("GET");
    QUrl url{}; ///< http or https
    HeaderFields headers{}; ///< beside Host, User-Agent and Content-Length; one with a line break is left out
    QByteArray body{};
    HttpLimits limits{};
    /// Where the body goes when the status is 200; memory when empty. It arrives in a temporary file beside
    /// it, which takes its name, replacing an older file, once it holds exactly expectedSize bytes.
    QString destination{};
    qint64 expectedSize = 0;
    /// No host is sent more than six at once of those for memory, and of those for files, that take turns.
    bool takesTurns = false;
    QByteArray checksum{}; ///< SHA-256 that the file must have; empty: any
};

enum class HttpFailure {
    None,
    TimedOut, ///< nothing moved
    TooSlow, ///< the whole took too long
    HostNotFound,
    CannotConnect,
    ProxyUnreachable,
    ConnectionLost,
    NoSecureConnection,
    CertificateUntrusted,
    NoHttp, ///< what came is no reply
    NotDecodable, ///< called gzip, but is not; the body is the beginning of what came
    HeadTooLong,
    BodyTooLong,
    BodyTooShort, ///< than expected, for a file
    OtherChecksum, ///< than expected, for a file
    NotStored, ///< the system's error in code
    Unknown,
};

struct HttpReply {
    int status = 0; ///< of the last head; 0 when none arrived
    HeaderFields headers{}; ///< of the last head
    QByteArray body{}; ///< decompressed; empty where the headers lead to another address
    qint64 received = 0; ///< bytes of the body, decompressed
    bool handshake = false; ///< a server's certificate was looked at for this request
    HttpFailure failure = HttpFailure::None;
    int code = 0;
    QString reason{}; ///< of the failure, for the log
};

/// Whether @p reply leads to another address, which its header "Location" names.
[[nodiscard]] bool leadsElsewhere(const HttpReply &reply);

/// The system's way to web servers. Sends one request, once: nothing is followed, and a request is sent again
/// only when the connection that it went over was closed before. Names are resolved, files written and
/// proxies asked for elsewhere than on the main thread. Main thread.
class HttpTransfers {
public:
    using Progress = std::function<void(qint64 received)>;
    using Handler = std::function<void(const HttpReply &)>;

    HttpTransfers() = default;
    virtual ~HttpTransfers() = default;
    Q_DISABLE_COPY_MOVE(HttpTransfers)

    /// Starts @p request. @p handler is called once, later, and neither is called after cancel() or when this
    /// object is gone. @p progress may be empty. @return what cancel() takes
    virtual quint64 start(HttpRequest request, Progress progress, Handler handler) = 0;
    /// Breaks the transfer off; nothing of its file is left. Nothing happens when it has ended.
    virtual void cancel(quint64 transfer) = 0;
};

/// What all requests share.
struct HttpSetup {
    QByteArray userAgent;
    QByteArray extraAuthorities{}; ///< certificates in PEM form, trusted beside the system's
    std::chrono::milliseconds proxyRemembered = std::chrono::minutes(1); ///< before the system is asked again
};

/// Costs nothing before the first request.
[[nodiscard]] std::unique_ptr<HttpTransfers> createHttpTransfers(const HttpSetup &setup);

} // namespace brevok
