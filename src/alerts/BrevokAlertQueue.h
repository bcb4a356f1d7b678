// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/BrevokAlert.h"

#include <QSet>

namespace brevok {

/// Shows application-modal alerts, each text once at a time, one after the other. Main thread; calls from
/// other threads are refused with a log line and answered alertNotShown.
class BrevokAlertQueue final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokAlertQueue)

public:
    BrevokAlertQueue(AlertPresenter &presenter, PanelKeeper &panel, QObject *parent = nullptr);
    ~BrevokAlertQueue() override;

    /// The queue of this process, for the outermost code.
    static BrevokAlertQueue *alertQueue();

    /// Shows an alert that the caller built, at once, and waits for its answer; alertNotShown when the same
    /// text is already known. For what answers the user's own act, and nothing else.
    int runModal(Alert &alert);

    /// Shows the alert when those before it are answered, and returns at once: @p answered gets the answer
    /// while @p context lives, before this returns when nothing is shown. The caller keeps the alert until
    /// then.
    /// @return what answers the alert in the user's place
    AlertPresenter::Ending beginModal(Alert &alert, QObject *context, AlertPresenter::Completion answered);
    /// The same for an alert that the caller gives away.
    void show(std::unique_ptr<Alert> alert, QObject *context, AlertPresenter::Completion answered = {});

    /// Builds an alert with texts and buttons, and shows it as show() does.
    void tell(const QString &messageText, const QString &informativeText, const QStringList &buttons);
    /// Builds an alert and shows it as runModal() does. @p icon and @p accessory may be empty.
    int modalAlert(const QString &messageText, const QString &informativeText, const QString &icon,
        const QStringList &buttons, const QVariant &accessory = {});

    /// Lets the text be shown again.
    void removeFromQueue(const QString &key);

    /// The presenter that callers build their alerts with.
    [[nodiscard]] AlertPresenter &presenter() const { return m_presenter; }
    /// The panel that callers' own blocking alerts hold open.
    [[nodiscard]] PanelKeeper &panel() const { return m_panel; }

private:
    /// An alert that is up, or waits for those before it.
    struct Turn {
        QPointer<Alert> alert{};
        std::unique_ptr<Alert> owned{}; ///< the same, where nobody else keeps it
        QPointer<QObject> context{};
        AlertPresenter::Completion answered{};
        AlertPresenter::Ending ending{}; ///< while it is up
        bool up = false;
        bool over = false;
    };
    using TurnPtr = std::shared_ptr<Turn>;

    [[nodiscard]] bool mayShow(Alert &alert);
    [[nodiscard]] std::unique_ptr<BrevokAlert> build(
        const QString &messageText, const QString &informativeText, const QStringList &buttons);
    int showOnce(Alert &alert);
    AlertPresenter::Ending queue(const TurnPtr &turn);
    void showNext();
    void showNextLater();
    void endTurn(const TurnPtr &turn, int response);

    AlertPresenter &m_presenter;
    PanelKeeper &m_panel;
    QSet<QString> m_keys; ///< of alerts that are up, wait, or went a moment ago
    QList<TurnPtr> m_turns; ///< the first is up, unless somebody waits for an alert
    int m_awaited = 0; ///< alerts that somebody waits for
};

} // namespace brevok
