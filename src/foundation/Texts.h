// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>

namespace brevok {

/// Look-up of texts that users see: `Texts::tr("English text")`. The English text is the key.
class Texts {
    Q_DECLARE_TR_FUNCTIONS(Brevok)
};

} // namespace brevok
