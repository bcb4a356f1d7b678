// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QRegularExpression>
#include <QTest>
#include <QWidget>

namespace brevok::testing {

/// A test of windows, whose functions fail at all warnings but what the windowless platform says of itself.
class WindowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support)")));
    }
};

/// Gives @p window the focus, as a click on it does.
inline void focus(QWidget &window)
{
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

} // namespace brevok::testing
