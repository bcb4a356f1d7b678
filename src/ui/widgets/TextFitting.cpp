// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/widgets/TextFitting.h"

#include "foundation/UntrustedText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QTextBoundaryFinder>
#include <QWidget>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr QChar placeToBreak(0x200B); // zero width space
constexpr qsizetype mostOfToolTip = 1000; // characters

// What was selected in @p label and comes to the clipboard. What other programs copy is not asked for: they
// may answer late, or not at all.
void copyWhole(const QLabel &label, QClipboard::Mode mode)
{
    if (!label.hasSelectedText() || !label.isVisible()) {
        return;
    }
    QClipboard *clipboard = QGuiApplication::clipboard();
    const QString copied = clipboard->text(mode);
    if (copied.contains(placeToBreak) && copied.size() == label.selectedText().size()) {
        clipboard->setText(QString(copied).remove(placeToBreak), mode);
    }
}

// The text with places to break inside its overlong words.
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
            result += placeToBreak;
            run = 1;
        }
        result += character;
    }
    return result;
}

} // namespace

void setBreakableText(QLabel &label, const QString &text)
{
    constexpr auto watched = "copiesAreWhole";
    label.setText(breakable(text));
    label.setAccessibleName(severalLines(text));
    if (label.textInteractionFlags().testFlag(Qt::TextSelectableByMouse)
        && !label.property(watched).toBool()) {
        label.setProperty(watched, true);
        QObject::connect(QGuiApplication::clipboard(), &QClipboard::changed, &label,
            [&label](QClipboard::Mode mode) { copyWhole(label, mode); });
    }
}

QString plainToolTip(const QString &text)
{
    constexpr qsizetype mostLines = 16;
    if (text.isEmpty()) {
        return {};
    }
    QStringList lines = severalLines(text, mostOfToolTip).split(u'\n');
    if (lines.size() > mostLines) {
        lines.resize(mostLines);
        lines.append(u"…"_s);
    }
    return u"<p style='white-space: pre-wrap'>%1</p>"_s.arg(breakable(lines.join(u'\n')).toHtmlEscaped());
}

void setPlainToolTip(QWidget &view, const QString &text)
{
    view.setToolTip(plainToolTip(text));
    view.setAccessibleDescription(severalLines(text, mostOfToolTip));
}

} // namespace brevok
