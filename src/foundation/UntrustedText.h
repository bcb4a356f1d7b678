// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok {

// What a service, an archive, a bundle or another program says comes through here before it is shown, logged
// or made a name or a header. Ordinary text of any language stays as it is.

/// @p text on one line, for rows, titles and tables: a blank for each line break and control character,
/// nothing for what changes the direction of writing, U+FFFD for half a surrogate pair; of more than @p most
/// characters only the beginning and "…".
[[nodiscard]] QString oneLine(const QString &text, qsizetype most = 1000);

/// The same for text that may have several lines: line breaks (as "\n") and tabs stay.
[[nodiscard]] QString severalLines(const QString &text, qsizetype most = 4000);

/// Whether @p text holds nothing that oneLine() would change, whatever its length.
[[nodiscard]] bool isHarmless(const QString &text);

/// Whether @p text can stand in a header as the value of a cookie, and is no longer than one may be.
[[nodiscard]] bool isCookieValue(const QString &text);

} // namespace brevok
