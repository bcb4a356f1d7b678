// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "daemon/HelperService.h"

#include "daemon/TargetPath.h"
#include "helper/BrevokInstaller.h"
#include "HelperToolAdaptor.h"

#include <QDBusMessage>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr auto busName = "com.tolvane.brevok.HelperTool"_L1;
constexpr auto objectPath = "/com/tolvane/brevok/HelperTool"_L1;

using Operation = HelperRequest::Operation;

QDBusMessage errorReply(const QDBusMessage &call, HelperAnswer::Refusal refusal)
{
    switch (refusal) {
    case HelperAnswer::Refusal::None:
    case HelperAnswer::Refusal::Forbidden:
        break;
    case HelperAnswer::Refusal::NotAuthorized:
        return call.createErrorReply(
            u"com.tolvane.brevok.HelperTool.Error.NotAuthorized"_s, u"You are not authorized to do this."_s);
    case HelperAnswer::Refusal::NeedsQuestion:
        return call.createErrorReply(u"org.freedesktop.DBus.Error.InteractiveAuthorizationRequired"_s,
            u"This needs an administrator's consent."_s);
    case HelperAnswer::Refusal::TooMuch:
        return call.createErrorReply(u"org.freedesktop.DBus.Error.LimitsExceeded"_s, u"Too much at once."_s);
    }
    // The same words whatever there is at a path.
    return call.createErrorReply(
        u"org.freedesktop.DBus.Error.AccessDenied"_s, u"The helper does not do this."_s);
}

QVariantList onWire(const std::optional<BrevokError> &error)
{
    const BrevokError sent = error.value_or(BrevokError());
    return {sent.domain, sent.code, sent.description};
}

QVariantList results(const QDBusMessage &call, Operation operation, const HelperAnswer &answer)
{
    switch (operation) {
    case Operation::Install:
    case Operation::Remove: {
        const QVariantList values = QVariantList{answer.yes} + onWire(answer.error);
        return call.member() == u"Install"_s ? values + onWire(answer.failure) : values;
    }
    case Operation::ExistsIsDirectory:
        return {answer.yes, answer.isDirectory};
    case Operation::SetAttributes:
        return {};
    case Operation::Exists:
    case Operation::IsReadable:
    case Operation::IsWritable:
    case Operation::IsExecutable:
    case Operation::IsDeletable:
        break;
    }
    return {answer.yes};
}

} // namespace

HelperService::HelperService(QDBusConnection bus, const QString &stateFolder, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_desk(m_bus, stateFolder)
{
    new HelperToolAdaptor(this); // owned by this object, as adaptors are
    connect(&m_desk, &RequestDesk::becameIdle, this, &HelperService::active);
}

HelperService::~HelperService() = default;

bool HelperService::publish()
{
    return m_bus.registerObject(QString(objectPath), this) && m_bus.registerService(QString(busName));
}

void HelperService::withdraw()
{
    m_bus.unregisterService(QString(busName));
}

// The value returned goes nowhere, as the answer follows later.
bool HelperService::take(const Arguments &arguments)
{
    setDelayedReply(true);
    const QDBusMessage call = message();
    const auto request = std::make_shared<const HelperRequest>(HelperRequest{
        .operation = arguments.operation,
        .caller = call.service(),
        .target = targetPath(arguments.target).value_or(arguments.target),
        .source = plainPath(arguments.source).value_or(arguments.source),
        .user = arguments.user,
        .permissions = arguments.permissions,
        .recursive = arguments.recursive,
        .checksum = arguments.checksum,
        .mayAsk = call.isInteractiveAuthorizationAllowed(),
    });
    Q_EMIT active();
    m_desk.take(request, [bus = m_bus, call, operation = arguments.operation](const HelperAnswer &answer) {
        bus.send(answer.refusal == HelperAnswer::Refusal::None
                ? call.createReply(results(call, operation, answer))
                : errorReply(call, answer.refusal));
    });
    return false;
}

int HelperService::Version()
{
    Q_EMIT active();
    return installerInterfaceVersion;
}

bool HelperService::InstallPluginFromSource(const QString &source, const QString &target, uint user,
    QString & /*errorDomain*/, int & /*errorCode*/, QString & /*errorDescription*/)
{
    return take({.operation = Operation::Install, .target = target, .source = source, .user = user});
}

bool HelperService::Install(const QString &source, const QString &target, uint user,
    const QByteArray &checksum, QString & /*errorDomain*/, int & /*errorCode*/,
    QString & /*errorDescription*/, QString & /*failureDomain*/, int & /*failureCode*/,
    QString & /*failureDescription*/)
{
    return take({.operation = Operation::Install,
        .target = target,
        .source = source,
        .user = user,
        .checksum = checksum});
}

bool HelperService::RemoveItemAtPath(
    const QString &path, QString & /*errorDomain*/, int & /*errorCode*/, QString & /*errorDescription*/)
{
    return take({.operation = Operation::Remove, .target = path});
}

bool HelperService::FileExistsAtPath(const QString &path)
{
    return take({.operation = Operation::Exists, .target = path});
}

bool HelperService::FileExistsAtPathIsDirectory(const QString &path, bool & /*isDirectory*/)
{
    return take({.operation = Operation::ExistsIsDirectory, .target = path});
}

bool HelperService::IsReadableFileAtPath(const QString &path)
{
    return take({.operation = Operation::IsReadable, .target = path});
}

bool HelperService::IsWritableFileAtPath(const QString &path)
{
    return take({.operation = Operation::IsWritable, .target = path});
}

bool HelperService::IsExecutableFileAtPath(const QString &path)
{
    return take({.operation = Operation::IsExecutable, .target = path});
}

bool HelperService::IsDeletableFileAtPath(const QString &path)
{
    return take({.operation = Operation::IsDeletable, .target = path});
}

void HelperService::SetUID(uint user, uint permissions, const QString &item, bool recursive)
{
    take({.operation = Operation::SetAttributes,
        .target = item,
        .user = user,
        .permissions = permissions,
        .recursive = recursive});
}

} // namespace brevok
