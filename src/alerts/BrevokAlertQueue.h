// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/BrevokAlert.h"

namespace brevok {

/// Shows application-modal alerts, each text once at a time. Main thread; calls from other threads are
/// refused with a log line and answered alertNotShown.
class BrevokAlertQueue final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokAlertQueue)

public:
    BrevokAlertQueue(AlertPresenter &presenter, PanelKeeper &panel, QObject *parent = nullptr);
    ~BrevokAlertQueue() override;

    /// The queue of this process, for the outermost code.
    static BrevokAlertQueue *alertQueue();

    /// Shows an alert that the caller built; alertNotShown when the same text is already known.
    int runModal(Alert &alert);

    /// As runModal(), but returns at once: @p answered gets the answer while @p context lives, before this
    /// returns when nothing is shown. The caller keeps the alert until then.
    /// @return what answers the alert in the user's place
    AlertPresenter::Ending beginModal(Alert &alert, QObject *context, AlertPresenter::Completion answered);

    /// Builds an alert and shows it. @p icon and @p accessory may be empty.
    int modalAlert(const QString &messageText, const QString &informativeText, const QString &icon,
        const QStringList &buttons, const QVariant &accessory = {});

    /// Lets the text be shown again.
    void removeFromQueue(const QString &key);

    /// The presenter that callers build their alerts with.
    [[nodiscard]] AlertPresenter &presenter() const { return m_presenter; }
    /// The panel that callers' own blocking alerts hold open.
    [[nodiscard]] PanelKeeper &panel() const { return m_panel; }

private:
    [[nodiscard]] bool mayShow(Alert &alert);
    int showOnce(Alert &alert);

    AlertPresenter &m_presenter;
    PanelKeeper &m_panel;
    QSet<QString> m_keys;
};

} // namespace brevok
