// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "reporting/BugReporter.h"

#include <QDialog>

#include <functional>
#include <memory>

namespace Ui {
class BrevokBugReporter;
}

namespace brevok {

class BrevokAlertQueue;

/// The window in which the user describes a problem and sends it, with the program's state, to the service.
/// It stays usable while a report is on its way: only its form is disabled. Main thread.
class BrevokBugReporterController final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokBugReporterController)

public:
    /// All outlive the window.
    struct Collaborators {
        BugReporter &reporter;
        BrevokAlertQueue &alerts;
        std::function<QString()> account; ///< the e-mail address that is signed in, empty for none
    };

    explicit BrevokBugReporterController(Collaborators collaborators, QWidget *parent = nullptr);
    ~BrevokBugReporterController() override;

    /// The window of this process, for the outermost code; null while none was made.
    static BrevokBugReporterController *bugReporterController();

    /// Brings the window to the front, with what was typed before, or the account's address.
    void showWindow();
    /// Checks what was typed and sends it; a sheet tells what came of it.
    void report();
    /// Shows the body that report() would send now.
    void showBody();
    /// Enables or disables every control under @p view.
    static void setSubViews(QWidget &view, bool enabled);

private:
    void setTexts();
    void setFormEnabled(bool enabled);
    void showProgress(const QString &text);
    void showStage(BugReporter::Stage stage);
    void showOutcome(const ReportOutcome &outcome);
    void focusFault();
    void presentBody(const QByteArray &body);
    [[nodiscard]] QString noteText() const;

    Collaborators m_with;
    std::unique_ptr<Ui::BrevokBugReporter> m_outlets;
    QPointer<QWidget> m_focused; ///< before the form was disabled
    bool m_gathering = false; ///< what will be sent
};

} // namespace brevok
