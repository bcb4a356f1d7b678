// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/NullHelperTool.h"

#include "foundation/Texts.h"

namespace brevok {

namespace {

bool refused(std::optional<BrevokError> *error)
{
    *error = BrevokError{.domain = QString::fromLatin1(installerErrorDomain),
        .code = NullHelperTool::unavailable,
        .description = Texts::tr("This system offers no privileged helper.")};
    return false;
}

} // namespace

bool NullHelperTool::removeJob(std::optional<BrevokError> *error)
{
    return refused(error);
}

bool NullHelperTool::bless(std::optional<BrevokError> *error)
{
    return refused(error);
}

} // namespace brevok
