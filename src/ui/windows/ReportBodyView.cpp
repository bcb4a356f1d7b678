// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/ReportBodyView.h"

#include "foundation/Texts.h"
#include "ui_ReportBody.h"

#include <QFontDatabase>

namespace brevok {

ReportBodyView::ReportBodyView(const QByteArray &body, QWidget *parent)
    : QDialog(parent)
    , m_outlets(std::make_unique<Ui::ReportBody>())
{
    m_outlets->setupUi(this);
    setWindowTitle(Texts::tr("What will be sent"));
    m_outlets->explanation->setText(
        Texts::tr("This is everything that is sent if you send the report now (%1 bytes).")
            .arg(QLocale().toString(body.size())));
    m_outlets->body->setAccessibleName(windowTitle());
    m_outlets->body->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_outlets->body->setWordWrapMode(QTextOption::WrapAnywhere);
    m_outlets->body->setPlainText(QString::fromUtf8(body));
    m_outlets->close->setText(Texts::tr("Close"));
    connect(m_outlets->close, &QPushButton::clicked, this, &QDialog::close);
}

ReportBodyView::~ReportBodyView() = default;

} // namespace brevok
