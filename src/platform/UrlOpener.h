// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QUrl>

namespace brevok {

/// Shows web pages in the user's browser. Main thread; returns at once.
class UrlOpener : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(UrlOpener)

public:
    UrlOpener() = default;
    ~UrlOpener() override = default;

    /// Only http and https addresses are opened.
    virtual void open(const QUrl &url) = 0;

Q_SIGNALS:
    /// No browser came up for what open() was asked for; emitted by it, or when that shows.
    void failed(const QUrl &url);
};

} // namespace brevok
