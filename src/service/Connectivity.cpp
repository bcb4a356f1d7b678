// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/Connectivity.h"

#include "foundation/Log.h"
#include "foundation/Secrets.h"
#include "foundation/Tasks.h"
#include "foundation/UntrustedText.h"
#include "platform/InternetAddress.h"
#include "service/NetworkFactory.h"
#include "service/TransportErrors.h"

#include <QCoreApplication>
#include <QPointer>

#include <array>

namespace brevok {

using namespace Qt::StringLiterals;

struct Connectivity::Diagnosis {
    QUrl url;
    QPointer<QObject> context;
    std::function<void()> done;

    void end() const
    {
        if (context) {
            done();
        }
    }
};

namespace {

constexpr int okStatus = 200;
constexpr qint64 longestBody = qint64{1024} * 1024;
constexpr qsizetype longestHeaders = qsizetype{8} * 1024; // in the log

QString headerText(const HeaderFields &headers)
{
    QStringList fields;
    for (const auto &[name, value] : headers) {
        const bool secret = name.compare("Set-Cookie", Qt::CaseInsensitive) == 0;
        fields << u"%1 = \"%2\""_s.arg(
            QString::fromLatin1(name), secret ? u"(not logged)"_s : QString::fromUtf8(value));
    }
    return oneLine(
        u"{%1}"_s.arg(withoutSecretFields(fields.join("; "_L1).left(2 * longestHeaders))), longestHeaders);
}

} // namespace

QString reachabilityPhrase(ReachabilityFlags flags)
{
    struct Phrase {
        ReachabilityFlag flag;
        const char *text;
    };
    // The first that applies, so the second phrase for traffic is never reached.
    static constexpr std::array phrases{Phrase{TransientConnection, "Transient Connection "},
        Phrase{Reachable, "Reachable "}, Phrase{ConnectionRequired, "Connection Required "},
        Phrase{ConnectionOnTraffic, "Connection Automatic "},
        Phrase{ConnectionOnDemand, "Connection On Demand "},
        Phrase{ConnectionOnTraffic, "Connection On Traffic "},
        Phrase{InterventionRequired, "Intervention Required "}, Phrase{IsLocalAddress, "Is Local Address "},
        Phrase{IsDirect, "Is Direct "}};
    for (const Phrase &phrase : phrases) {
        if ((flags & phrase.flag) != 0) {
            return QString::fromLatin1(phrase.text);
        }
    }
    return u"Not Reachable "_s;
}

Connectivity::Connectivity(NetworkFactory &network, const RouteLookup &routes, QObject *parent)
    : QObject(parent)
    , m_network(network)
    , m_routes(routes)
{
}

Connectivity::~Connectivity() = default;

bool Connectivity::checkNetworkReachability() const
{
    const QString host = m_network.configuration().reachabilityHost;
    const std::optional<ReachabilityFlags> flags =
        host.isEmpty() ? std::nullopt : m_routes.flagsForHost(host);
    return flags && (*flags & Reachable) != 0 && (*flags & ConnectionRequired) == 0;
}

void Connectivity::checkAzureReachability(QObject *context, std::function<void(bool)> done)
{
    const auto answer = [guard = QPointer<QObject>(context), done = std::move(done)](bool reachable) {
        if (guard) {
            done(reachable);
        }
    };
    const auto isValid = [](const ServiceReply &reply) {
        return !reply.error && reply.status == okStatus && reply.received > 0;
    };
    send(m_network.configuration().baseUrl, "GET", [this, answer, isValid](const ServiceReply &got) {
        if (!isValid(got)) {
            answer(false);
            return;
        }
        send(m_network.configuration().baseUrl, "POST",
            [answer, isValid](const ServiceReply &posted) { answer(isValid(posted)); });
    });
}

void Connectivity::logConectivityTo(const QUrl &url, int port, QObject *context, std::function<void()> done)
{
    const Diagnosis diagnosis{url, context, std::move(done)};
    const auto endLater = [this, diagnosis] {
        onMain(this, [diagnosis] { diagnosis.end(); });
    };
    if (!url.isValid()) {
        logLine(u"Connection: Invalid URL"_s);
        endLater();
        return;
    }
    logLine(u"Connection: %1:%2"_s.arg(addressText(url), QString::number(port)));
    if (url.host().isEmpty()) {
        logLine(u"Connection: Invalid host"_s);
        endLater();
        return;
    }
    logLine(u"Connection: "_s + url.host());
    Task resolve = [self = QPointer<Connectivity>(this), host = url.host(), asked = diagnosis]() mutable {
        const QString address = InternetAddress::resolved(host).text();
        // Moved on, so that nothing of the caller's is destroyed on this thread.
        onMain(QCoreApplication::instance(), [self, address, asked = std::move(asked)] {
            if (self) {
                logLine(u"Connection: "_s + (address.isEmpty() ? u"Can't resolve adress"_s : address));
                self->logFlags(asked);
            }
        });
    };
    inBackgroundApart(std::move(resolve));
}

void Connectivity::logFlags(const Diagnosis &diagnosis)
{
    const std::optional<ReachabilityFlags> known = m_routes.flagsForHost(diagnosis.url.host());
    const ReachabilityFlags flags = known.value_or(0);
    logLine(u"Connection: Host is %1(%2)"_s.arg(reachabilityPhrase(flags)).arg(flags));
    if (known && (flags & Reachable) != 0 && (flags & ConnectionOnTraffic) == 0) {
        logRequests(diagnosis);
    } else {
        diagnosis.end();
    }
}

void Connectivity::logRequests(const Diagnosis &diagnosis)
{
    send(diagnosis.url, "GET", [this, diagnosis](const ServiceReply &got) {
        logAnswer(u"GET"_s, got);
        // To the service whatever address was asked for.
        send(m_network.configuration().baseUrl, "POST", [diagnosis](const ServiceReply &posted) {
            logAnswer(u"POST"_s, posted);
            diagnosis.end();
        });
    });
}

void Connectivity::logAnswer(const QString &method, const ServiceReply &answer)
{
    const QString line = u"Connection: %1 "_s.arg(method);
    if (answer.error) {
        logLine(line + u"returned error "_s + answer.error->description);
    } else if (answer.status != okStatus) {
        logLine(line + u"responded %1"_s.arg(answer.status));
    } else if (answer.received == 0) {
        logLine(line + u"returned with empty reply"_s);
    } else {
        logLine(line + u"returned valid reply"_s);
        logLine(line + u"header fields: "_s + headerText(answer.headers));
    }
}

// Of the body only matters whether there is one: an endless one is one too.
void Connectivity::send(const QUrl &url, const QByteArray &method, ServiceClient::ReplyHandler handler)
{
    ExchangeRequest request = m_network.request(url);
    request.method = method;
    request.cookies = CookieRule::Take;
    request.logsChallenges = true;
    request.limits.bodyBytes = longestBody;
    request.limits.wholeMs = m_network.configuration().requestTimeoutMs;
    m_network.send(request, this, [handler = std::move(handler)](ServiceReply reply) {
        if (reply.error && reply.error->domain == QLatin1StringView(connectionErrorDomain)) {
            reply.error.reset();
        }
        handler(reply);
    });
}

} // namespace brevok
