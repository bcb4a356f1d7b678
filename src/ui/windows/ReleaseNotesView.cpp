// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/ReleaseNotesView.h"

#include <QEvent>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QTextFrame>
#include <QTextList>
#include <QTextTable>

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// Deeper ones take long to lay out; nobody writes notes so.
constexpr int frameDepthLimit = 3;
constexpr int frameCountLimit = 200;
constexpr int indentLimit = 12;

// "1 < 2" does not make a text HTML.
bool isHtml(const QString &notes)
{
    static const QRegularExpression element(
        u"<(!doctype|html|body|div|p|br|h[1-6]|[uo]l|li|a|b|i|em|strong|span|table|blockquote|pre|code)\\b[^<]*>"_s,
        QRegularExpression::CaseInsensitiveOption);
    return notes.contains(element);
}

// Whether a window can show what @p frame holds without delay.
bool isModest(const QTextFrame &frame, int depth, int &count)
{
    const QList<QTextFrame *> inner = frame.childFrames();
    return depth <= frameDepthLimit && (count += static_cast<int>(inner.size())) <= frameCountLimit
        && std::all_of(inner.cbegin(), inner.cend(),
            [depth, &count](const QTextFrame *child) { return isModest(*child, depth + 1, count); });
}

bool isModest(const QTextDocument &document)
{
    int count = 0;
    if (!isModest(*document.rootFrame(), 0, count)) {
        return false;
    }
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        const QTextList *list = block.textList();
        if (block.blockFormat().indent() + (list != nullptr ? list->format().indent() : 0) > indentLimit) {
            return false;
        }
    }
    return true;
}

QTextCharFormat desktopFormat(QTextCharFormat format, const QBrush &link)
{
    for (const int property : {int(QTextFormat::ForegroundBrush), int(QTextFormat::BackgroundBrush),
             int(QTextFormat::FontPointSize), int(QTextFormat::FontPixelSize),
             int(QTextFormat::TextToolTip)}) {
        format.clearProperty(property);
    }
    if (format.isAnchor()) {
        format.setForeground(link);
        // Encoded, so that no tool tip takes it for markup.
        format.setToolTip(QUrl(format.anchorHref()).toString(QUrl::FullyEncoded));
    }
    return format;
}

// A picture that is never fetched would be shown as one that failed.
void removePictures(QTextDocument &document)
{
    QTextCursor cursor(&document);
    while (!(cursor = document.find(QString(QChar::ObjectReplacementCharacter), cursor)).isNull()) {
        cursor.removeSelectedText();
    }
}

// Colours that suit the writer's page need not suit the user's desktop.
void takeDesktopColours(QTextDocument &document, const QBrush &link)
{
    QTextCursor cursor(&document);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        QList<QPair<int, int>> places;
        for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
            places.append({piece.fragment().position(), piece.fragment().length()});
        }
        for (const auto &[position, length] : std::as_const(places)) {
            cursor.setPosition(position);
            cursor.setPosition(position + length, QTextCursor::KeepAnchor);
            cursor.setCharFormat(desktopFormat(cursor.charFormat(), link));
        }
        cursor.setPosition(block.position());
        QTextBlockFormat format = cursor.blockFormat();
        format.clearBackground();
        cursor.setBlockFormat(format);
    }
    QTextFrameFormat page = document.rootFrame()->frameFormat();
    page.clearBackground();
    document.rootFrame()->setFrameFormat(page);
}

} // namespace

ReleaseNotesView::ReleaseNotesView(QWidget *parent)
    : QTextBrowser(parent)
{
    setOpenLinks(false);
    setOpenExternalLinks(false);
    setUndoRedoEnabled(false);
}

ReleaseNotesView::~ReleaseNotesView() = default;

void ReleaseNotesView::setNotes(const QString &notes)
{
    if (notes != m_notes) {
        m_notes = notes;
        fill();
    }
}

void ReleaseNotesView::fill()
{
    if (!isHtml(m_notes)) {
        setPlainText(m_notes);
        return;
    }
    auto *document = new QTextDocument(this);
    document->setResourceProvider([](const QUrl &) { return QVariant(); });
    document->setDefaultFont(font());
    document->setHtml(m_notes);
    if (isModest(*document)) {
        removePictures(*document);
        takeDesktopColours(*document, palette().link());
        setDocument(document);
    } else {
        setPlainText(document->toPlainText());
        delete document;
    }
}

QVariant ReleaseNotesView::loadResource(int, const QUrl &)
{
    return {};
}

void ReleaseNotesView::changeEvent(QEvent *event)
{
    QTextBrowser::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !m_notes.isEmpty()) {
        fill();
    }
}

} // namespace brevok
