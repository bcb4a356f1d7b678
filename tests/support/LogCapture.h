// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

namespace brevok::testing {

/// Collects the program's log lines while it lives, from all threads, in place of printing them. A warning or
/// worse that nothing expects still fails the test (QTest::failOnWarning), as it goes on to the test's own
/// handler.
class LogCapture final {
public:
    LogCapture();
    ~LogCapture();
    Q_DISABLE_COPY_MOVE(LogCapture)

    [[nodiscard]] static QStringList lines();
    /// How many lines equal @p line.
    [[nodiscard]] static qsizetype count(const QString &line);
    [[nodiscard]] static bool contains(const QString &line) { return count(line) > 0; }
    /// Whether a line holds @p text.
    [[nodiscard]] static bool mentions(const QString &text);
    static void clear();
};

} // namespace brevok::testing
