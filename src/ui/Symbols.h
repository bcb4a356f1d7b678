// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>
#include <QString>

namespace brevok {

/// The program's drawn image @p name in @p colour, @p size points square for a screen of @p ratio pixels a
/// point. Null when there is no such image.
[[nodiscard]] QPixmap symbolPixmap(const QString &name, const QColor &colour, int size, qreal ratio);

} // namespace brevok
