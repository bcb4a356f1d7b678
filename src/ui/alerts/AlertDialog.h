// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/AlertContent.h"

#include <QDialog>
#include <QPointer>

class QBoxLayout;
class QLabel;
class QPushButton;

namespace brevok {

/// Which buttons of an alert the keys and the frame's close button press; -1 for none.
struct AlertKeys {
    qsizetype onReturn = -1;
    qsizetype onEscape = -1;
    qsizetype onClose = -1;
};

/// The window of one alert: an icon, the two texts as plain text, an accessory, the buttons. The first button
/// is the outermost of the row. Return presses its button wherever the focus is; the space bar presses the
/// focused one.
class AlertDialog final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AlertDialog)

public:
    explicit AlertDialog(AlertContent content, QWidget *parent = nullptr);
    /// Hands an accessory back to whoever made it.
    ~AlertDialog() override;

    /// What the alert was answered: alertFirstButton and so on; alertStopped until then, and when it was
    /// closed without a button that Escape presses.
    [[nodiscard]] int response() const { return m_response; }

    /// Closes the alert unanswered.
    void stop();
    /// Closes the alert as if it had been answered so.
    void end(int response);

public Q_SLOTS:
    void reject() override;

protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void addIcon(QBoxLayout &row);
    void addTexts(QBoxLayout &column);
    void addAccessory(QBoxLayout &column);
    void addButtons(QBoxLayout &column);
    void refreshIcon();
    void answer(qsizetype button);
    void press(qsizetype button);

    AlertContent m_content;
    AlertKeys m_keys;
    QLabel *m_icon = nullptr;
    QList<QPushButton *> m_buttons;
    QPointer<QWidget> m_accessory;
    int m_response = alertStopped;
};

} // namespace brevok
