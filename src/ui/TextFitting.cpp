// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/TextFitting.h"

#include <QTextBoundaryFinder>

namespace brevok {

using namespace Qt::StringLiterals;

QString breakable(const QString &text)
{
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

QString singleLine(const QString &text)
{
    QString result = text;
    for (QChar &character : result) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line
            || category == QChar::Separator_Paragraph) {
            character = u' ';
        }
    }
    return result;
}

QString plainToolTip(const QString &text)
{
    return text.isEmpty() ? QString() : u"<qt>%1</qt>"_s.arg(breakable(text).toHtmlEscaped());
}

} // namespace brevok
