// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class BrevokUpdateProgress;
}

namespace brevok {

class MainBundle;

/// The window of a check for updates that the user asked for. Outlets: `icon`, `indicator`. Main thread.
class BrevokUpdateProgressController final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokUpdateProgressController)

public:
    explicit BrevokUpdateProgressController(const MainBundle &bundle, QWidget *parent = nullptr);
    ~BrevokUpdateProgressController() override;

    /// Brings the window to the front; the check's end closes it with close().
    void showWindow();
    /// Closes the window; the check goes on.
    void cancel();

private:
    std::unique_ptr<Ui::BrevokUpdateProgress> m_outlets;
};

} // namespace brevok
