// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

#include <functional>

class QBoxLayout;
class QLabel;
class QPushButton;

namespace brevok {

class MainBundle;

/// What all small windows are: the application's icon, texts, and buttons below them. One of them is a class
/// derived from this, whose constructor says what stands in it. Main thread.
class SmallWindow : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SmallWindow)

public:
    ~SmallWindow() override;

    /// Brings the window to the front.
    void showWindow();
    /// The same, as a sheet of @p window (null: of none), which gets the focus back.
    void showOver(QWidget *window);

    /// Gives the focus back only where it is still here: what ends by itself must not take it from another
    /// window.
    void done(int result) override;

protected:
    enum class Arrangement { BesideIcon, BelowIcon };

    /// @p name is that of the window and, in its test, of what belongs to it.
    SmallWindow(const MainBundle &bundle, const QString &name, QSize size,
        Arrangement arrangement = Arrangement::BesideIcon);

    /// Below what was added before; shown as plain text.
    QLabel &addText(const QString &name, const QString &text = {});
    void add(QWidget &widget);
    /// What follows stands at the bottom.
    void addSpace();
    /// Pressed, it calls @p pressed.
    QPushButton &addButton(const QString &name, const QString &title, const std::function<void()> &pressed);

private:
    QBoxLayout *m_column;
    QBoxLayout *m_buttons;
    bool m_centred;
};

} // namespace brevok
