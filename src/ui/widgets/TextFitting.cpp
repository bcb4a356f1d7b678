// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/widgets/TextFitting.h"

#include "foundation/UntrustedText.h"

#include <QTextBoundaryFinder>

namespace brevok {

using namespace Qt::StringLiterals;

QString breakable(const QString &shown)
{
    const QString text = severalLines(shown);
    constexpr qsizetype longestWord = 30;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    QString result;
    qsizetype run = 0;
    qsizetype from = 0;
    while (characters.toNextBoundary() > from) {
        const QStringView character = QStringView(text).sliced(from, characters.position() - from);
        from = characters.position();
        run = character.front().isSpace() ? 0 : run + 1;
        if (run > longestWord) {
            result += QChar(0x200B); // zero width space
            run = 1;
        }
        result += character;
    }
    return result;
}

QString plainToolTip(const QString &text)
{
    return text.isEmpty() ? QString() : u"<qt>%1</qt>"_s.arg(breakable(text).toHtmlEscaped());
}

} // namespace brevok
