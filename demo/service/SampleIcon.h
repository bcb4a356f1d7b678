// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

namespace brevok::demo {

/// A PNG image of 64 by 64 pixels: a rounded square in @p colour ("3a7bd5", red green blue) that bears @p
/// glyph in white: strokes separated by ";", each a chain of points "x,y" with y pointing down, of any size.
[[nodiscard]] QByteArray sampleIcon(const QByteArray &colour, const QString &glyph);

} // namespace brevok::demo
