// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class BrevokUpdateResult;
}

namespace brevok {

class MainBundle;

/// Tells what a check for updates found. Outlets: `icon`, `title`, `label`. Main thread.
class BrevokUpdateResultController final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokUpdateResultController)

public:
    explicit BrevokUpdateResultController(const MainBundle &bundle, QWidget *parent = nullptr);
    ~BrevokUpdateResultController() override;

    /// The texts, localised; set before showWindow().
    QString titleString;
    QString labelString;

    /// Shows the two texts and brings the window to the front.
    void showWindow();
    /// Closes the window.
    void ok();

private:
    std::unique_ptr<Ui::BrevokUpdateResult> m_outlets;
};

} // namespace brevok
