// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "daemon/PolkitAuthority.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

#include <climits>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr auto polkitName = "org.freedesktop.PolicyKit1"_L1;
constexpr auto polkitPath = "/org/freedesktop/PolicyKit1/Authority"_L1;
constexpr auto polkitInterface = "org.freedesktop.PolicyKit1.Authority"_L1;
constexpr int answerTimeoutMs = 2500; ///< twice this is still within five seconds
constexpr int livenessIntervalMs = 1500;

QDBusMessage polkitCall(const QString &interface, const QString &method)
{
    return QDBusMessage::createMethodCall(QString(polkitName), QString(polkitPath), interface, method);
}

struct Subject {
    QString kind;
    QVariantMap details;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Subject &subject)
{
    argument.beginStructure();
    argument << subject.kind << subject.details;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Subject &subject)
{
    argument.beginStructure();
    argument >> subject.kind >> subject.details;
    argument.endStructure();
    return argument;
}

PolkitAuthority::Verdict verdictOf(const QDBusMessage &reply)
{
    const auto first = reply.arguments().value(0);
    if (reply.type() != QDBusMessage::ReplyMessage || !first.canConvert<QDBusArgument>()) {
        return PolkitAuthority::Verdict::Unreachable;
    }
    const auto result = first.value<QDBusArgument>();
    if (result.currentSignature() != "(bba{ss})"_L1) {
        return PolkitAuthority::Verdict::Unreachable;
    }
    bool authorized = false;
    bool challenge = false;
    result.beginStructure();
    result >> authorized >> challenge;
    if (authorized) {
        return PolkitAuthority::Verdict::Yes;
    }
    return challenge ? PolkitAuthority::Verdict::Question : PolkitAuthority::Verdict::No;
}

} // namespace

} // namespace brevok

Q_DECLARE_METATYPE(brevok::Subject)

namespace brevok {

PolkitAuthority::PolkitAuthority(QDBusConnection bus, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
{
    qDBusRegisterMetaType<Subject>();
    qDBusRegisterMetaType<QMap<QString, QString>>();
    auto *watcher = new QDBusServiceWatcher(
        QString(polkitName), m_bus, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        const QStringList open = m_checks.keys();
        for (const QString &id : open) {
            settle(id, Verdict::Unreachable);
        }
    });
    m_liveness.setInterval(livenessIntervalMs);
    connect(&m_liveness, &QTimer::timeout, this, &PolkitAuthority::lookAfterQuestions);
}

PolkitAuthority::~PolkitAuthority() = default;

QString PolkitAuthority::check(const QString &caller, const QString &action,
    const QMap<QString, QString> &details, Interaction interaction, Done done)
{
    const bool interactive = interaction == Interaction::Allowed;
    QString id = u"brevok-%1"_s.arg(++m_last);
    m_checks.insert(id, {std::move(done), interactive});
    QDBusMessage call = polkitCall(QString(polkitInterface), u"CheckAuthorization"_s);
    call << QVariant::fromValue(Subject{u"system-bus-name"_s, {{u"name"_s, caller}}}) << action
         << QVariant::fromValue(details) << (interactive ? 1U : 0U) << id;
    const int timeout = interactive ? INT_MAX : answerTimeoutMs;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, timeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, id, watcher] {
        settle(id, verdictOf(watcher->reply()));
        watcher->deleteLater();
    });
    if (interactive && !m_liveness.isActive()) {
        m_liveness.start();
    }
    return id;
}

void PolkitAuthority::cancel(const QString &id)
{
    if (m_checks.remove(id) > 0) {
        m_bus.send(polkitCall(QString(polkitInterface), u"CancelCheckAuthorization"_s) << id);
    }
}

void PolkitAuthority::settle(const QString &id, Verdict verdict)
{
    const auto check = m_checks.constFind(id);
    if (check == m_checks.constEnd()) {
        return;
    }
    const Done done = check->done;
    m_checks.erase(check);
    done(verdict);
}

// While somebody thinks about a password polkit answers other calls all the same.
void PolkitAuthority::lookAfterQuestions()
{
    QStringList questions;
    for (auto check = m_checks.cbegin(); check != m_checks.cend(); ++check) {
        if (check->interactive) {
            questions.append(check.key());
        }
    }
    if (questions.isEmpty()) {
        m_liveness.stop();
        return;
    }
    QDBusMessage call = polkitCall(u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << QString(polkitInterface) << u"BackendVersion"_s;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, answerTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, questions, watcher] {
        if (watcher->isError()) {
            for (const QString &id : questions) {
                settle(id, Verdict::Unreachable);
            }
        }
        watcher->deleteLater();
    });
}

} // namespace brevok
