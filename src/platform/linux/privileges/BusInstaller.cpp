// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/privileges/BusInstaller.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/Texts.h"
#include "HelperToolProxy.h"
#include "platform/CurrentUser.h"
#include "platform/linux/files/FileErrors.h"
#include "platform/linux/files/SafePath.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QTemporaryFile>
#include <QTimer>

#include <cerrno>
#include <climits>

#include <sys/file.h>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

using Proxy = ComTolvaneBrevokHelperToolInterface;

constexpr auto objectPath = "/com/tolvane/brevok/HelperTool"_L1;
constexpr int answerTimeoutMs = 5000;
constexpr auto copyPrefix = "brevok-handed-over-"_L1;

/// One that answers within seconds or not at all.
class QuickProxy final : public Proxy {
public:
    explicit QuickProxy(const QDBusConnection &bus)
        : Proxy(QString(BusInstaller::busName), QString(objectPath), bus)
    {
        setTimeout(answerTimeoutMs);
    }
};

/// Waits on a background thread, in a loop of its own, for as long as the helper lives.
QDBusMessage answerTo(const QDBusConnection &bus, const QDBusMessage &call)
{
    QEventLoop loop;
    QuickProxy helper(bus);
    QDBusPendingCallWatcher answer(bus.asyncCall(call, INT_MAX));
    QObject::connect(&answer, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    QTimer liveness;
    liveness.setInterval(answerTimeoutMs);
    QObject::connect(&liveness, &QTimer::timeout, &loop, [&helper, &loop] {
        if (!helper.connection().isConnected()) { // then no call ever ends
            loop.quit();
        }
        auto *sign = new QDBusPendingCallWatcher(helper.Version(), &loop);
        QObject::connect(sign, &QDBusPendingCallWatcher::finished, &loop, [sign, &loop] {
            if (sign->isError()) {
                loop.quit();
            }
            sign->deleteLater();
        });
    });
    liveness.start();
    if (bus.isConnected()) {
        loop.exec();
    }
    return answer.isFinished()
        ? answer.reply()
        : call.createErrorReply(QDBusError::NoReply, Texts::tr("The privileged helper is not responding."));
}

BrevokError errorOf(const QDBusMessage &answer)
{
    BrevokError error;
    error.domain = QString::fromLatin1(installerErrorDomain);
    error.code = 1;
    const QString name = answer.errorName();
    if (name.endsWith(u".NotAuthorized") || name.endsWith(u".InteractiveAuthorizationRequired")) {
        error.description = Texts::tr("Administrator approval is required and was not given.");
    } else {
        error.description = answer.errorMessage();
    }
    error.details.insert(u"BusError"_s, name);
    return error;
}

/// The error whose three parts begin at @p at; none when its domain is empty.
std::optional<BrevokError> errorAt(const QVariantList &values, qsizetype at)
{
    if (values[at].toString().isEmpty()) {
        return std::nullopt;
    }
    return BrevokError{.domain = values[at].toString(),
        .code = values[at + 1].toInt(),
        .description = values[at + 2].toString()};
}

template <typename Reply> bool yes(Reply reply)
{
    reply.waitForFinished();
    return !reply.isError() && reply.template argumentAt<0>();
}

/// The path without links, as far as there is something: the helper follows none that a user can have made.
QString withoutLinks(const QString &path)
{
    const QString folder = deletingLastPathComponent(path);
    if (folder.isEmpty() || folder == path) {
        return path;
    }
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    const QString name = path.mid(path.lastIndexOf(u'/') + 1);
    const QString before = canonical.isEmpty() ? withoutLinks(folder) : canonical;
    return before.endsWith(u'/') ? before + name : before + u'/' + name;
}

/// The helper takes only files of its caller's own: this program's own files, which may be root's, are handed
/// over as copies, each locked while it is needed. @return nothing with errno when there can be no whole copy
std::optional<QString> ownFile(const QString &source, std::optional<QTemporaryFile> &copy)
{
    QString path = QFileInfo(source).canonicalFilePath();
    if (path.isEmpty() || QFileInfo(path).ownerId() == currentUserId()) {
        return path.isEmpty() ? source : path;
    }
    copy.emplace(QFileInfo(QDir::tempPath()).canonicalFilePath() + u'/' + copyPrefix + u"XXXXXX."_s
        + QFileInfo(path).suffix());
    QFile file(path);
    if (!copy->open() || ::flock(copy->handle(), LOCK_EX) != 0 || !file.open(QIODevice::ReadOnly)
        || !safepath::copyAll(file.handle(), copy->handle(), file.size())) {
        return std::nullopt;
    }
    return copy->fileName();
}

} // namespace

BusInstaller::BusInstaller(QDBusConnection bus, bool mayAsk)
    : m_bus(std::move(bus))
    , m_mayAsk(mayAsk)
{
}

// The generated proxy cannot allow a question to the user in this version of Qt.
QDBusMessage BusInstaller::changingCall(const QString &method, const QVariantList &arguments) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QString(busName), QString(objectPath), QLatin1StringView(Proxy::staticInterfaceName()), method);
    call.setArguments(arguments);
    call.setInteractiveAuthorizationAllowed(m_mayAsk);
    return call;
}

bool BusInstaller::introspect(bool *installs)
{
    const QDBusMessage answer =
        m_bus.call(QDBusMessage::createMethodCall(QString(busName), QString(objectPath),
                       u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s),
            QDBus::Block, answerTimeoutMs);
    const QString description = answer.arguments().value(0).toString();
    *installs = description.contains(u"\"Install\"");
    return answer.type() == QDBusMessage::ReplyMessage
        && description.contains(QLatin1StringView(Proxy::staticInterfaceName()));
}

// A copy that can be locked has lost its owner.
void BusInstaller::clearLeftovers()
{
    const QFileInfoList copies =
        QDir(QDir::tempPath()).entryInfoList({copyPrefix + u"*"_s}, QDir::Files | QDir::NoSymLinks);
    for (const QFileInfo &copy : copies) {
        QFile file(copy.filePath());
        if (copy.ownerId() == currentUserId() && file.open(QIODevice::ReadOnly)
            && ::flock(file.handle(), LOCK_EX | LOCK_NB) == 0) {
            file.remove();
        }
    }
}

int BusInstaller::version()
{
    QDBusPendingReply<int> reply = QuickProxy(m_bus).Version();
    reply.waitForFinished();
    return reply.isError() ? 0 : reply.value();
}

InstallResult BusInstaller::install(const InstallOrder &order)
{
    std::optional<QTemporaryFile> copy;
    const std::optional<QString> source = ownFile(order.source, copy);
    if (!source) {
        const int code = errno;
        const BrevokError error =
            fileError(Texts::tr("Could not read the file \"%1\"").arg(order.source), order.source, code);
        return {.error = error, .failure = error.detailedErrors.constFirst()};
    }
    const QVariantList arguments{*source, withoutLinks(order.target), order.user, order.checksum};
    const QDBusMessage answer = answerTo(m_bus, changingCall(u"Install"_s, arguments));
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != u"bsissis"_s) {
        const BrevokError error = errorOf(answer);
        return {.error = error, .failure = error};
    }
    const QVariantList values = answer.arguments();
    return {.answer = values[0].toBool(), .error = errorAt(values, 1), .failure = errorAt(values, 4)};
}

bool BusInstaller::removeItemAtPath(const QString &path, ErrorSlot error)
{
    const QDBusMessage answer = answerTo(m_bus, changingCall(u"RemoveItemAtPath"_s, {withoutLinks(path)}));
    const bool understood = answer.type() == QDBusMessage::ReplyMessage && answer.signature() == u"bsis"_s;
    const std::optional<BrevokError> failure =
        understood ? errorAt(answer.arguments(), 1) : std::optional(errorOf(answer));
    if (failure && error != nullptr) {
        *error = failure;
    }
    return understood && answer.arguments().constFirst().toBool();
}

bool BusInstaller::fileExistsAtPath(const QString &path)
{
    return yes(QuickProxy(m_bus).FileExistsAtPath(withoutLinks(path)));
}

bool BusInstaller::fileExistsAtPath(const QString &path, bool *isDirectory)
{
    QDBusPendingReply<bool, bool> reply = QuickProxy(m_bus).FileExistsAtPathIsDirectory(withoutLinks(path));
    reply.waitForFinished();
    *isDirectory = !reply.isError() && reply.argumentAt<1>();
    return yes(reply);
}

bool BusInstaller::isReadableFileAtPath(const QString &path)
{
    return yes(QuickProxy(m_bus).IsReadableFileAtPath(withoutLinks(path)));
}

bool BusInstaller::isWritableFileAtPath(const QString &path)
{
    return yes(QuickProxy(m_bus).IsWritableFileAtPath(withoutLinks(path)));
}

bool BusInstaller::isExecutableFileAtPath(const QString &path)
{
    return yes(QuickProxy(m_bus).IsExecutableFileAtPath(withoutLinks(path)));
}

bool BusInstaller::isDeletableFileAtPath(const QString &path)
{
    return yes(QuickProxy(m_bus).IsDeletableFileAtPath(withoutLinks(path)));
}

void BusInstaller::setUID(quint32 user, quint32 permissions, const QString &item, bool recursive)
{
    const QDBusMessage answer =
        answerTo(m_bus, changingCall(u"SetUID"_s, {user, permissions, withoutLinks(item), recursive}));
    if (answer.type() != QDBusMessage::ReplyMessage) {
        logError(errorOf(answer));
    }
}

} // namespace brevok
