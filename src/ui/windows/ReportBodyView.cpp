// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/ReportBodyView.h"

#include "foundation/Texts.h"
#include "ui_ReportBody.h"

#include <QFontDatabase>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPlainTextEdit>
#include <QTextCursor>

#include <array>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

enum Section { Written, Application, Logs, Crashes };
constexpr std::array sections{Written, Application, Logs, Crashes};

// Whatever has no other place is the application's, so that nothing is left out.
Section sectionOf(const QString &key)
{
    if (key == "Email"_L1 || key == "Description"_L1) {
        return Written;
    }
    return key.endsWith(".log"_L1) ? Logs : key.endsWith(".crash"_L1) ? Crashes : Application;
}

QString titleOf(Section section)
{
    switch (section) {
    case Written:
        return Texts::tr("What you wrote");
    case Logs:
        return Texts::tr("Logs");
    case Crashes:
        return Texts::tr("Crash reports");
    case Application:
        break;
    }
    return Texts::tr("The application");
}

QPlainTextEdit *makePage(QWidget *parent)
{
    auto *page = new QPlainTextEdit(parent);
    page->setFrameShape(QFrame::NoFrame);
    page->setTabChangesFocus(true);
    page->setUndoRedoEnabled(false);
    page->setReadOnly(true);
    page->setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
    page->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    page->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    return page;
}

void addPart(QPlainTextEdit &page, const QString &name, const QString &value)
{
    QTextCursor cursor(page.document());
    cursor.movePosition(QTextCursor::End);
    if (!page.document()->isEmpty()) {
        cursor.insertText(u"\n\n"_s);
    }
    QTextCharFormat bold;
    bold.setFontWeight(QFont::Bold);
    cursor.insertText(name, bold);
    cursor.insertText(u'\n' + value, QTextCharFormat());
}

} // namespace

ReportBodyView::ReportBodyView(const QByteArray &body, QWidget *parent)
    : QDialog(parent)
    , m_outlets(std::make_unique<Ui::ReportBody>())
{
    m_outlets->setupUi(this);
    setWindowTitle(Texts::tr("What will be sent"));
    m_outlets->explanation->setText(
        Texts::tr("This is everything that is sent if you send the report now (%1 bytes).")
            .arg(QLocale().toString(body.size())));
    m_outlets->close->setText(Texts::tr("Close"));
    connect(m_outlets->close, &QPushButton::clicked, this, &QDialog::close);
    showParts(QJsonDocument::fromJson(body).object());
}

ReportBodyView::~ReportBodyView() = default;

// What is shown is read from the very body that is sent.
void ReportBodyView::showParts(QJsonObject body)
{
    std::array<QPlainTextEdit *, sections.size()> pages{};
    const auto add = [&](const QString &name, const QString &value) {
        QPlainTextEdit *&page = pages.at(sectionOf(name));
        if (page == nullptr) {
            page = makePage(this);
        }
        addPart(*page, name, value);
    };
    const QJsonArray items = body.take("Data"_L1).toArray();
    for (auto field = body.constBegin(); field != body.constEnd(); ++field) {
        add(field.key(), field.value().toString());
    }
    for (const QJsonValue item : items) {
        add(item["Key"_L1].toString(), item["Value"_L1].toString());
    }
    for (const Section section : sections) {
        if (QPlainTextEdit *page = pages.at(section)) {
            page->moveCursor(QTextCursor::Start);
            page->setAccessibleName(titleOf(section));
            m_outlets->sections->addTab(page, titleOf(section));
        }
    }
}

} // namespace brevok
