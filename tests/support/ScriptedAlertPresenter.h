// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/AlertPresenter.h"

#include <QList>
#include <QStringList>

namespace brevok::testing {

/// Keeps what it was asked to show and answers as the test says.
class ScriptedAlertPresenter final : public AlertPresenter {
public:
    QList<AlertContent> shown;
    QList<AlertContent> sheets;
    QList<Completion> completions;
    QList<Completion> up; ///< of alerts that wait
    int answer = alertFirstButton;
    bool waits = false; ///< alerts that nobody waits for stay up
    SheetInterface sheetSupport = SheetInterface::WithHandler;
    bool windowsEndSheets = true; ///< else the application does
    QStringList endedBy; ///< who was asked to end a sheet
    /// Runs while an alert is up, before it is answered.
    std::function<void(const AlertContent &)> whileShown;

    int runModal(const AlertContent &alert) override
    {
        shown.append(alert);
        if (whileShown) {
            whileShown(alert);
        }
        return answer;
    }
    /// Answers at once, or, when it is to wait, by what it returns or by press().
    Ending beginModal(const AlertContent &alert, Completion completion) override
    {
        if (!waits) {
            completion(runModal(alert));
            return [](int) {
            };
        }
        shown.append(alert);
        up.append(completion);
        return [answered = std::move(completion)](int response) {
            answered(response);
        };
    }
    /// Answers the alert that waits for it the longest.
    void press(int response) { up.takeFirst()(response); }
    [[nodiscard]] SheetInterface sheetInterface() const override { return sheetSupport; }
    void beginSheet(const AlertContent &alert, QObject *, Completion completion) override
    {
        sheets.append(alert);
        completions.append(std::move(completion));
    }
    [[nodiscard]] bool windowEndsSheets(QObject *) const override { return windowsEndSheets; }
    void windowEndSheet(QObject *) override { endedBy.append(QStringLiteral("window")); }
    void applicationEndSheet(QObject *) override { endedBy.append(QStringLiteral("application")); }
};

/// A panel that remembers what it was told.
class RecordingPanel final : public PanelKeeper {
public:
    QList<bool> calls;
    void setKeepOpenPanel(bool keepOpen) override { calls.append(keepOpen); }
};

} // namespace brevok::testing
