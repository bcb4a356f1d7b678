// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/network/CurlTransfer.h"

#include <QRegularExpression>

#include <cerrno>
#include <utility>

namespace brevok {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int httpOk = 200;
constexpr int firstFinalStatus = 200;
// Below that much a body may be any multiple of what came, above it that multiple.
constexpr qint64 harmlessBody = 32LL * 1024 * 1024;
constexpr qint64 mostExpansion = 200;
constexpr qint64 redirectBodyLimit = 64LL * 1024;
constexpr int tooLarge = 100; // CURLE_TOO_LARGE, since 8.6
constexpr auto progressInterval = 50ms;
constexpr long bufferSize = 128L * 1024;
// The folder of the system's authorities, which are read as they are needed; the one file with all of them is
// read for every connection.
constexpr auto authoritiesFolder = "/etc/ssl/certs";

// RFC 9112, section 4; newer libraries take more for one.
bool isStatusLine(const QByteArray &line)
{
    static const QRegularExpression pattern(uR"(^HTTP/1\.[01] \d{3}(?!\d))"_s);
    return pattern.match(QString::fromLatin1(line.first(std::min(line.size(), qsizetype(16))))).hasMatch();
}

} // namespace

CurlTransfer::CurlTransfer(TransferDesk &desk, const HttpSetup &setup, TransferOrder order)
    : m_desk(desk)
    , m_order(std::move(order))
    , m_easy(curl_easy_init())
{
    set(CURLOPT_PRIVATE, this);
    set(CURLOPT_ERRORBUFFER, m_error.data());
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // a name that is being resolved is not waited for
    set(CURLOPT_HEADERFUNCTION, &CurlTransfer::headerArrived);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &CurlTransfer::bodyArrived);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_NOPROGRESS, 0L);
    set(CURLOPT_XFERINFOFUNCTION, &CurlTransfer::moved);
    set(CURLOPT_XFERINFODATA, this);
    set(CURLOPT_BUFFERSIZE, bufferSize);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_USERAGENT, setup.userAgent.constData());
    set(CURLOPT_PROXY, m_order.proxy.constData());
    setTrust(setup);
    setRequest();
    setHeaders();
}

CurlTransfer::~CurlTransfer() = default;

CurlTransfer *CurlTransfer::of(CURL *handle)
{
    char *transfer = nullptr;
    curl_easy_getinfo(handle, CURLINFO_PRIVATE, &transfer);
    return reinterpret_cast<CurlTransfer *>(transfer);
}

void CurlTransfer::setTrust(const HttpSetup &setup)
{
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    set(CURLOPT_CAINFO, nullptr);
    set(CURLOPT_CAPATH, authoritiesFolder);
    if (!setup.extraAuthorities.isEmpty()) {
        QByteArray authorities = setup.extraAuthorities;
        curl_blob blob = {authorities.data(), static_cast<size_t>(authorities.size()), CURL_BLOB_COPY};
        set(CURLOPT_CAINFO_BLOB, &blob);
    }
}

void CurlTransfer::setRequest()
{
    const HttpRequest &request = m_order.request;
    const QByteArray address = request.url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_HTTP_VERSION,
        static_cast<long>(CURL_HTTP_VERSION_1_1)); // what is sent keeps order and spelling
    set(CURLOPT_URL, address.constData());
    if (request.method == "POST") {
        set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size()));
        set(CURLOPT_POSTFIELDS, request.body.constData());
        // What a service did with a request whose connection broke is unknown. On a connection that was kept,
        // the library would send it again.
        set(CURLOPT_FRESH_CONNECT, 1L);
    } else if (request.method != "GET") {
        set(CURLOPT_CUSTOMREQUEST, request.method.constData());
    }
}

void CurlTransfer::setHeaders()
{
    const HeaderFields &fields = m_order.request.headers;
    for (const auto &[name, value] : fields) {
        addHeader(name + ": " + value);
    }
    if (headerValue(fields, "Accept-Encoding").isEmpty()) {
        addHeader("Accept-Encoding: gzip");
    }
    // What the library would say by itself.
    for (const QByteArray name : {"Accept", "Content-Type", "Expect"}) {
        if (headerValue(fields, name).isEmpty()) {
            addHeader(name + ":");
        }
    }
    set(CURLOPT_HTTPHEADER, m_headers.get());
}

void CurlTransfer::addHeader(const QByteArray &line)
{
    if (!line.contains('\r') && !line.contains('\n') && !line.contains('\0')) {
        curl_slist *list = curl_slist_append(m_headers.get(), line.constData());
        static_cast<void>(m_headers.release());
        m_headers.reset(list);
    }
}

CurlTransfer::Clock::time_point CurlTransfer::deadline() const
{
    const auto silence = m_moved + std::chrono::milliseconds(m_order.request.limits.silenceMs);
    return std::min(silence, m_order.wholeDeadline());
}

size_t CurlTransfer::headerArrived(const char *data, size_t size, size_t count, void *transfer)
{
    const QByteArrayView line(data, static_cast<qsizetype>(size * count));
    return static_cast<CurlTransfer *>(transfer)->takeHeader(line) ? size * count : 0;
}

size_t CurlTransfer::bodyArrived(const char *data, size_t size, size_t count, void *transfer)
{
    const QByteArrayView body(data, static_cast<qsizetype>(size * count));
    return static_cast<CurlTransfer *>(transfer)->takeBody(body) ? size * count : 0;
}

int CurlTransfer::moved(
    void *transfer, curl_off_t /*total*/, curl_off_t /*done*/, curl_off_t /*upTotal*/, curl_off_t upDone)
{
    auto *self = static_cast<CurlTransfer *>(transfer);
    self->noteProgress(upDone - std::exchange(self->m_uploaded, upDone));
    return 0;
}

void CurlTransfer::noteProgress(qint64 bytes)
{
    m_progress += bytes;
    if (m_progress >= m_order.request.limits.leastBytes) {
        m_progress = 0;
        m_moved = Clock::now();
    }
}

bool CurlTransfer::takeHeader(QByteArrayView line)
{
    noteProgress(line.size());
    m_headerBytes += line.size();
    if (m_headerBytes > m_order.request.limits.headerBytes) {
        return fail(HttpFailure::HeadTooLong, u"The heads have more than %1 bytes"_s.arg(m_headerBytes));
    }
    const QByteArray text = line.toByteArray();
    if (text.startsWith("HTTP/")) {
        m_headWhole = false;
        m_reply.headers.clear();
        return isStatusLine(text) || fail(HttpFailure::NoHttp, u"The status line is none"_s);
    }
    const QByteArray content = text.trimmed();
    const qsizetype colon = text.indexOf(':');
    if (content.isEmpty()) {
        const long status = info(CURLINFO_RESPONSE_CODE);
        m_reply.status = status >= firstFinalStatus ? static_cast<int>(status) : 0;
        m_headWhole = true;
    } else if (m_headWhole) {
        return true; // behind the body: nothing that decides
    } else if ((text.at(0) == ' ' || text.at(0) == '\t') && !m_reply.headers.isEmpty()) {
        m_reply.headers.last().second += ' ' + content;
    } else if (colon > 0) {
        m_reply.headers.append({text.first(colon).trimmed(), text.sliced(colon + 1).trimmed()});
    }
    return true;
}

bool CurlTransfer::isForFile() const
{
    return !m_order.request.destination.isEmpty();
}

bool CurlTransfer::takeBody(QByteArrayView data)
{
    noteProgress(data.size());
    m_bodyBytes += data.size();
    if (leadsElsewhere(m_reply)) {
        m_reply.received += data.size();
        m_enough = m_reply.received > redirectBodyLimit;
        return !m_enough;
    }
    if (isForFile() && m_reply.status != httpOk) {
        m_enough = true;
        return false;
    }
    if (!m_gzip) {
        const QByteArray encoding = headerValue(m_reply.headers, "Content-Encoding").toLower();
        if (encoding != "gzip" && encoding != "x-gzip") {
            return keep(data);
        }
        m_gzip.emplace([this](QByteArrayView plain) { return keep(plain); });
    }
    const bool goesOn = m_gzip->add(data);
    if (m_gzip->isBroken()) {
        if (m_reply.body.isEmpty()) {
            m_reply.body = data.toByteArray();
        }
        return fail(HttpFailure::NotDecodable, u"The body is called gzip, but is not"_s);
    }
    return goesOn;
}

bool CurlTransfer::keep(QByteArrayView data)
{
    const HttpRequest &request = m_order.request;
    m_reply.received += data.size();
    const qint64 limit = isForFile() ? request.expectedSize : request.limits.bodyBytes;
    if (m_reply.received > limit) {
        return fail(HttpFailure::BodyTooLong, u"More than %1 bytes"_s.arg(limit));
    }
    if (!isForFile() && m_reply.received > harmlessBody && m_reply.received / mostExpansion > m_bodyBytes) {
        return fail(HttpFailure::BodyTooLong, u"More than %1 times what came"_s.arg(mostExpansion));
    }
    if (isForFile()) {
        return keepInFile(data);
    }
    m_reply.body.append(data);
    return true;
}

bool CurlTransfer::keepInFile(QByteArrayView data)
{
    if (!m_part) {
        m_part.emplace(m_order.request.destination);
        if (!m_part->open()) {
            return failToStore(errno);
        }
    }
    if (!m_part->write(data)) {
        return failToStore(errno);
    }
    if (!m_order.request.checksum.isEmpty()) {
        m_checksum.add(data);
    }
    if (Clock::now() - m_told > progressInterval) {
        m_told = Clock::now();
        m_desk.received(number(), m_reply.received);
    }
    return true;
}

bool CurlTransfer::failToStore(int code)
{
    return fail(HttpFailure::NotStored, m_part->errorText(), code);
}

bool CurlTransfer::fail(HttpFailure failure, const QString &reason, int code)
{
    m_reply.failure = failure;
    m_reply.reason = reason;
    m_reply.code = code;
    return false;
}

long CurlTransfer::info(CURLINFO what) const
{
    long value = 0;
    curl_easy_getinfo(m_easy.get(), what, &value);
    return value;
}

HttpFailure CurlTransfer::failureOf(CURLcode result) const
{
    const long connected = info(CURLINFO_HTTP_CONNECTCODE);
    if (connected != 0 && connected / 100 != 2) {
        return HttpFailure::ProxyUnreachable;
    }
    switch (static_cast<int>(result)) {
    case CURLE_OK:
        return HttpFailure::None;
    case CURLE_OPERATION_TIMEDOUT:
        return HttpFailure::TimedOut;
    case CURLE_COULDNT_RESOLVE_HOST:
        return HttpFailure::HostNotFound;
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_PROXY:
        return HttpFailure::ProxyUnreachable;
    case CURLE_COULDNT_CONNECT:
        return m_order.proxy.isEmpty() ? HttpFailure::CannotConnect : HttpFailure::ProxyUnreachable;
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
        return HttpFailure::ConnectionLost;
    case CURLE_PEER_FAILED_VERIFICATION:
        return HttpFailure::CertificateUntrusted;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CACERT_BADFILE:
        return HttpFailure::NoSecureConnection;
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_UNSUPPORTED_PROTOCOL:
        return HttpFailure::NoHttp;
    case tooLarge:
    case CURLE_OUT_OF_MEMORY: // that is what one endless line of a head is called
        return HttpFailure::HeadTooLong;
    default:
        return HttpFailure::Unknown;
    }
}

void CurlTransfer::judge(CURLcode result)
{
    if (m_reply.failure != HttpFailure::None || m_enough) {
        return;
    }
    if (const HttpFailure failure = failureOf(result); failure != HttpFailure::None) {
        const QString reason =
            QString::fromUtf8(m_error[0] != 0 ? m_error.data() : curl_easy_strerror(result));
        static_cast<void>(fail(failure, reason));
    } else if (!m_headWhole) { // the library takes one that is cut short for a whole one
        static_cast<void>(fail(HttpFailure::ConnectionLost, u"The head is not whole"_s));
    } else if (m_reply.status == 0) {
        static_cast<void>(fail(HttpFailure::NoHttp, u"No reply came"_s));
    } else {
        judgeBody();
    }
}

void CurlTransfer::judgeBody()
{
    if (m_gzip && !m_gzip->isWhole()) {
        static_cast<void>(fail(HttpFailure::ConnectionLost, u"The compressed body is not whole"_s));
    } else if (isForFile() && m_reply.status == httpOk) {
        if (m_reply.received != m_order.request.expectedSize) {
            static_cast<void>(fail(HttpFailure::BodyTooShort, u"%1 bytes came"_s.arg(m_reply.received)));
        } else if (const QByteArray found = m_checksum.take();
                   !m_order.request.checksum.isEmpty() && found != m_order.request.checksum) {
            const QString text = QString::fromLatin1(found.toHex());
            static_cast<void>(fail(HttpFailure::OtherChecksum, u"Its SHA-256 is %1"_s.arg(text)));
        } else if (!m_part) {
            static_cast<void>(keepInFile({})); // an empty one
        }
    }
}

void CurlTransfer::end(CURLcode result)
{
    judge(result);
    curl_off_t untilSecure = 0;
    curl_easy_getinfo(m_easy.get(), CURLINFO_APPCONNECT_TIME_T, &untilSecure);
    m_reply.handshake = info(CURLINFO_NUM_CONNECTS) > 0 && m_order.request.url.scheme() == "https"_L1
        && (untilSecure > 0 || m_reply.failure == HttpFailure::CertificateUntrusted);
    if (m_reply.failure != HttpFailure::None && m_reply.failure != HttpFailure::NotDecodable) {
        m_reply.body.clear();
    }
    m_reply.body.squeeze(); // whoever keeps it keeps no more than it
    QString part;
    if (m_part && m_reply.failure == HttpFailure::None) {
        m_desk.received(number(), m_reply.received);
        part = m_part->release();
    }
    m_part.reset(); // before anybody hears of it
    m_desk.ended(number(), m_reply, part);
}

void CurlTransfer::endLate()
{
    const HttpLimits &limits = m_order.request.limits;
    const bool silent = m_moved + std::chrono::milliseconds(limits.silenceMs) <= Clock::now();
    static_cast<void>(silent
            ? fail(HttpFailure::TimedOut, u"Too little arrived for %1 ms"_s.arg(limits.silenceMs))
            : fail(HttpFailure::TooSlow, u"Not complete after %1 ms"_s.arg(limits.wholeMs)));
    end(CURLE_OPERATION_TIMEDOUT);
}

} // namespace brevok
