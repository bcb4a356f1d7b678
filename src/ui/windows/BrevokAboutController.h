// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class BrevokAbout;
}

namespace brevok {

class MainBundle;

/// The About window. Outlets: `icon`, `name`, `version`, `copyright`. All facts are read when it is made.
/// Main thread.
class BrevokAboutController final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokAboutController)

public:
    explicit BrevokAboutController(const MainBundle &bundle, QWidget *parent = nullptr);
    ~BrevokAboutController() override;

    /// Brings the window to the front.
    void showWindow();

private:
    std::unique_ptr<Ui::BrevokAbout> m_outlets;
};

} // namespace brevok
