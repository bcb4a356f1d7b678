// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

namespace brevok {

/// A label in the colour of secondary texts, whatever the palette becomes.
class SecondaryLabel final : public QLabel {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SecondaryLabel)

public:
    explicit SecondaryLabel(QWidget *parent = nullptr);
    ~SecondaryLabel() override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

/// Says below a form why it failed; gone while there is nothing to say.
class FailureLabel final : public QLabel {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FailureLabel)

public:
    explicit FailureLabel(QWidget *parent = nullptr);
    ~FailureLabel() override;

    /// Of a very long @p failure the beginning, and the rest in a tool tip.
    void setFailure(const QString &failure);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_failure;
};

/// A line between parts of the panel.
class SeparatorLine final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SeparatorLine)

public:
    explicit SeparatorLine(QWidget *parent = nullptr);
    ~SeparatorLine() override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

/// One line of plain text, or two where it may have them, and a second text behind it, or below it where that
/// makes two lines. The first text goes before the second; what does not fit is cut with an ellipsis, and
/// then a tool tip holds the whole.
class ElidedLabel final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ElidedLabel)
    /// Whether the first text is drawn as a secondary one.
    Q_PROPERTY(bool secondary MEMBER m_secondary)

public:
    explicit ElidedLabel(QWidget *parent = nullptr);
    ~ElidedLabel() override;

    void setText(const QString &text, const QString &detail = {});
    /// Both texts.
    [[nodiscard]] QString text() const;
    void setFonts(const QFont &font, const QFont &detailFont);
    void setMostLines(int lines);
    /// Whether the first text is drawn as one that says what went wrong.
    void setFailing(bool failing);
    /// What the tool tip says in any case; nothing to have none but the usual.
    void setExplanation(const QString &explanation);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void lay();
    void layDetail(int textWidth, bool mayGoBelow);
    void updateToolTip(bool whole);
    [[nodiscard]] QString takeFirstLine(QString &rest) const;

    QString m_text;
    QString m_detail;
    QFont m_detailFont;
    QString m_explanation;
    QString m_shownText;
    QString m_shownMore; ///< on a second line
    QString m_shownDetail;
    bool m_detailBelow = false;
    int m_mostLines = 1;
    bool m_secondary = false;
    bool m_failing = false;
};

} // namespace brevok
