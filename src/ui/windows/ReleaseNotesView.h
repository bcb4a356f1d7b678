// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTextBrowser>

namespace brevok {

/// Shows notes that come from outside. Nothing is fetched, from the network or from this machine; nothing
/// moves; links are only reported by a signal. Colours and sizes of text are the desktop's own, whatever the
/// notes want.
class ReleaseNotesView final : public QTextBrowser {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ReleaseNotesView)

public:
    explicit ReleaseNotesView(QWidget *parent = nullptr);
    ~ReleaseNotesView() override;

    /// @p notes are HTML or plain text, whichever they look like.
    void setNotes(const QString &notes);

    /// No resource is ever there.
    [[nodiscard]] QVariant loadResource(int type, const QUrl &name) override;

protected:
    void changeEvent(QEvent *event) override;

private:
    void fill();

    QString m_notes;
};

} // namespace brevok
