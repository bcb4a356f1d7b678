// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/windows/SmallWindow.h"

class QPlainTextEdit;
class QUrl;

namespace brevok {

/// Shows the address of a page that no browser came up for, to be selected and copied.
class WebAddressWindow final : public SmallWindow {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(WebAddressWindow)

public:
    explicit WebAddressWindow(const MainBundle &bundle);
    ~WebAddressWindow() override;

    /// Shows the window before @p asking, the window with the link (null when there is none any more), which
    /// gets the focus back.
    void showAddress(const QUrl &url, QWidget *asking);

private:
    QPlainTextEdit *m_address;
};

} // namespace brevok
