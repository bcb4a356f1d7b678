// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/CurrentUser.h"

#include <unistd.h>

namespace brevok {

quint32 currentUserId()
{
    return ::getuid();
}

} // namespace brevok
