// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QLabel;
class QWidget;

namespace brevok {

/// @p shown, fit to show whoever wrote it, with places to break inside its overlong words, for labels that
/// wrap.
[[nodiscard]] QString breakable(const QString &shown);

/// Shows @p text in @p label, which wraps, as breakable() has it; what is told to assistive technology and
/// what is copied is without the places to break.
void setBreakableText(QLabel &label, const QString &text);

/// A tool tip that shows @p text as it stands, whatever mark-up it looks like: broken so that it stays on the
/// screen, and of a very long text the beginning.
[[nodiscard]] QString plainToolTip(const QString &text);

/// Gives @p view that tool tip, and tells assistive technology the same words without what breaks them.
void setPlainToolTip(QWidget &view, const QString &text);

} // namespace brevok
