// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class QScreen;

namespace brevok {

/// Tells when screens come, go, or change what windows have of them. Main thread.
class ScreenWatch final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ScreenWatch)

public:
    explicit ScreenWatch(QObject *parent = nullptr);
    ~ScreenWatch() override;

Q_SIGNALS:
    /// When that is done: a screen that went is not there any more.
    void changed();

private:
    void follow(QScreen *screen);
    void tellLater();
};

} // namespace brevok
