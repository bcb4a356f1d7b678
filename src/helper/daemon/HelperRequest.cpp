// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "daemon/HelperRequest.h"

#include "daemon/TargetPath.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 plainPermissions = 0777;

} // namespace

QString HelperRequest::name() const
{
    switch (operation) {
    case Operation::Install:
        return u"InstallPluginFromSource"_s;
    case Operation::Remove:
        return u"RemoveItemAtPath"_s;
    case Operation::SetAttributes:
        return u"SetUID"_s;
    case Operation::Exists:
        return u"FileExistsAtPath"_s;
    case Operation::ExistsIsDirectory:
        return u"FileExistsAtPathIsDirectory"_s;
    case Operation::IsReadable:
        return u"IsReadableFileAtPath"_s;
    case Operation::IsWritable:
        return u"IsWritableFileAtPath"_s;
    case Operation::IsExecutable:
        return u"IsExecutableFileAtPath"_s;
    case Operation::IsDeletable:
        return u"IsDeletableFileAtPath"_s;
    }
    return {};
}

QString HelperRequest::action() const
{
    return operation == Operation::Remove ? u"com.tolvane.brevok.helper.remove"_s
                                          : u"com.tolvane.brevok.helper.install"_s;
}

QString objectionTo(const HelperRequest &request, quint32 caller)
{
    if (targetPath(request.target) != request.target) {
        return u"the path cannot belong to an install target"_s;
    }
    if (request.operation == HelperRequest::Operation::Install
        && plainPath(request.source) != request.source) {
        return u"the source is not an absolute path"_s;
    }
    if (request.namesUser() && request.user != caller) {
        return u"the user id %1 is not the caller's own"_s.arg(request.user);
    }
    if ((request.permissions & ~plainPermissions) != 0) {
        return u"the permissions %1 are more than permissions"_s.arg(request.permissions, 0, 8);
    }
    return {};
}

} // namespace brevok
