// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/UntrustedText.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace brevok {

namespace {

enum class Lines { One, Several };

bool changesDirection(QChar c)
{
    const char16_t code = c.unicode();
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x206F) || code == 0x200E
        || code == 0x200F || code == 0x061C;
}

bool breaksLine(QChar c)
{
    const char16_t code = c.unicode();
    return (code >= u'\n' && code <= u'\r') || code == 0x85 || code == 0x2028 || code == 0x2029;
}

bool isControl(QChar c)
{
    return breaksLine(c) || c.category() == QChar::Other_Control;
}

// The beginning of a text that is too long. A letter keeps its marks, and an emoji its parts.
QString beginning(const QString &text, qsizetype most)
{
    constexpr qsizetype longestCharacter = 64;
    const qsizetype room = most - 1; // for the ellipsis
    const QString piece = text.left(room + longestCharacter);
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, piece);
    characters.setPosition(room);
    const qsizetype whole = characters.isAtBoundary() ? room : characters.toPreviousBoundary();
    return piece.left(room - whole < longestCharacter ? whole : room) + QChar(0x2026);
}

QString cleaned(const QString &text, qsizetype most, Lines lines)
{
    const QString source = text.size() > most ? beginning(text, most) : text;
    QString result;
    result.reserve(source.size());
    for (qsizetype i = 0; i < source.size(); ++i) {
        const QChar c = source[i];
        if (c.isHighSurrogate() && i + 1 < source.size() && source[i + 1].isLowSurrogate()) {
            result += c;
            result += source[++i];
        } else if (c.isSurrogate()) {
            result += QChar(QChar::ReplacementCharacter);
        } else if (lines == Lines::Several && breaksLine(c)) {
            const bool second = c == u'\n' && i > 0 && source[i - 1] == u'\r';
            result += second ? QString() : QString(u'\n');
        } else if (isControl(c)) {
            result += lines == Lines::Several && c == u'\t' ? c : QChar(u' ');
        } else if (!changesDirection(c)) {
            result += c;
        }
    }
    return result;
}

} // namespace

QString oneLine(const QString &text, qsizetype most)
{
    return text.size() <= most && isHarmless(text) ? text : cleaned(text, most, Lines::One);
}

QString severalLines(const QString &text, qsizetype most)
{
    return text.size() <= most && isHarmless(text) ? text : cleaned(text, most, Lines::Several);
}

bool isHarmless(const QString &text)
{
    return text.isValidUtf16() && std::none_of(text.cbegin(), text.cend(), [](QChar c) {
        return isControl(c) || changesDirection(c);
    });
}

bool isCookieValue(const QString &text)
{
    constexpr qsizetype longest = 4096;
    return text.size() <= longest && std::all_of(text.cbegin(), text.cend(), [](QChar c) {
        return c >= u' ' && c <= u'~' && c != u';';
    });
}

} // namespace brevok
