// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class ReportBody;
}

namespace brevok {

/// Shows a report's body as it is sent, to be read, selected and copied.
class ReportBodyView final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ReportBodyView)

public:
    explicit ReportBodyView(const QByteArray &body, QWidget *parent = nullptr);
    ~ReportBodyView() override;

private:
    std::unique_ptr<Ui::ReportBody> m_outlets;
};

} // namespace brevok
