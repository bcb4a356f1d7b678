// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QUrl>

namespace brevok {

/// Shows web pages in the user's browser. Main thread; returns at once.
class UrlOpener {
public:
    UrlOpener() = default;
    virtual ~UrlOpener() = default;
    Q_DISABLE_COPY_MOVE(UrlOpener)

    /// @return false when nothing could be started; only http and https addresses are opened.
    virtual bool open(const QUrl &url) = 0;
};

} // namespace brevok
