// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QLabel;
class QWidget;

namespace brevok {

/// Shows @p text, whoever wrote it, in @p label, which wraps: overlong words get places to break inside,
/// which what is told to assistive technology and what is copied does not have.
void setBreakableText(QLabel &label, const QString &text);

/// A tool tip that shows @p text as it stands, whatever mark-up it looks like: broken so that it stays on the
/// screen, and of a very long text the beginning.
[[nodiscard]] QString plainToolTip(const QString &text);

/// Gives @p view that tool tip, and tells assistive technology the same words without what breaks them.
void setPlainToolTip(QWidget &view, const QString &text);

} // namespace brevok
