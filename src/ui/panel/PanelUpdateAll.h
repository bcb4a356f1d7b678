// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

namespace brevok {

class PanelButton;
class UpdateRun;

/// Runs "Update All" in the panel's header: there while two or more packages wait, and a "Stop" while they
/// are updated. Main thread.
class PanelUpdateAll final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PanelUpdateAll)

public:
    PanelUpdateAll(PanelButton &button, UpdateRun &run, QObject *parent);
    ~PanelUpdateAll() override;

    /// @p waiting packages could be updated, none while nobody is signed in.
    void setWaiting(int waiting);
    void updateFonts();
    /// How far it is, for the header; empty while nothing is updated.
    [[nodiscard]] QString progressText() const;

Q_SIGNALS:
    /// Another progressText().
    void progressChanged();

private:
    void clicked();
    void update();

    PanelButton &m_button;
    UpdateRun &m_run;
    int m_waiting = 0;
};

} // namespace brevok
