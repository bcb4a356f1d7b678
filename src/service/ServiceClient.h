// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"
#include "service/Validator.h"

#include <QObject>

#include <optional>

namespace brevok {

/// Where the service is and whom to trust.
struct ServiceConfiguration {
    QUrl baseUrl; ///< HTTPS; without a trailing slash
    QByteArray extraAuthorities; ///< certificates in PEM form, trusted beside the system's
    QString reachabilityHost; ///< public host that stands for a working network
    int requestTimeoutMs = 60000; ///< without any progress, as the platform's default

    /// The address of @p path ("/api/plugin/list") on the service.
    [[nodiscard]] QUrl url(const QString &path) const;
};

/// Whether @p pem holds a block that can be a certificate: a whole DER value in the textual encoding (RFC
/// 7468). Looks at the form alone, so that the start needs no TLS library.
[[nodiscard]] bool holdsCertificate(const QByteArray &pem);

/// What came back for one request.
struct ServiceReply {
    QUrl url{}; ///< that answered
    int status = 0; ///< HTTP status code, 0 when no response head arrived
    QByteArray body{};
    HeaderFields headers{};
    qint64 received = 0; ///< bytes of the body, wherever it went
    std::optional<BrevokError> error{}; ///< transport errors only; an HTTP status is none
    Validator validator{}; ///< of what came, for the next request of a list or small file
    bool notModified = false; ///< it is what the request's validator stands for; there is no body

    /// See headerValue().
    [[nodiscard]] QByteArray header(const QByteArray &name) const { return headerValue(headers, name); }
};

/// One archive to download.
struct DownloadOrder {
    QUrl url{};
    QString destination{};
    qint64 expectedSize = 0;
    QByteArray checksum{}; ///< SHA-256 that it must have, 32 bytes; empty when none is known
};

/// The end of one archive download.
struct DownloadResult {
    qint64 received = 0; ///< bytes of the body
    bool stored = false; ///< the file stands at its destination, complete
    std::optional<BrevokError>
        error; ///< transfer error, HTTP status other than 200, wrong length or checksum, refused write
};

/// The requests that other rooms make. Main thread; handlers are called on the main thread, once, later than
/// the call, and not at all when @p context is gone by then.
class ServiceClient {
public:
    using ReplyHandler = std::function<void(const ServiceReply &)>;
    using ProgressHandler = std::function<void(qint64 done, qint64 expected)>;
    using DownloadHandler = std::function<void(const DownloadResult &)>;

    ServiceClient() = default;
    virtual ~ServiceClient() = default;
    Q_DISABLE_COPY_MOVE(ServiceClient)

    /// Whether a request makes sense at all (see Reachability). Quick; resolves nothing.
    [[nodiscard]] virtual bool checkNetworkReachability() = 0;

    /// GET of a list at @p path on the service, with the version header and, when signed in, the session
    /// cookie; only if it is another than @p known, when that came for this session from this service.
    virtual void getList(
        const QString &path, const Validator &known, QObject *context, ReplyHandler handler) = 0;

    /// GET of a small file (an icon) past any cache, at most 60 seconds and 8 MiB; only if it is another than
    /// @p known, when that came from this address.
    virtual void fetchFile(
        const QUrl &url, const Validator &known, QObject *context, ReplyHandler handler) = 0;

    /// GET of an archive, without headers or cookies of ours, streamed to a temporary file beside its
    /// destination while it arrives. Only a body of exactly the expected size, with that checksum, is renamed
    /// to the destination (replacing an older file); on any failure nothing is left. The folder exists
    /// already.
    virtual void download(
        const DownloadOrder &order, QObject *context, ProgressHandler progress, DownloadHandler handler) = 0;
};

} // namespace brevok
