// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>
#include <QJsonObject>

#include <memory>

namespace Ui {
class ReportBody;
}

namespace brevok {

/// Shows all of a report's body, part by part, to be read, selected and copied.
class ReportBodyView final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ReportBodyView)

public:
    explicit ReportBodyView(const QByteArray &body, QWidget *parent = nullptr);
    ~ReportBodyView() override;

private:
    void showParts(QJsonObject body);

    std::unique_ptr<Ui::ReportBody> m_outlets;
};

} // namespace brevok
