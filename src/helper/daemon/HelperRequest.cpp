// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "daemon/HelperRequest.h"

namespace brevok {

using namespace Qt::StringLiterals;

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

} // namespace brevok
