// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// What every harness has. Each defines check(), which libFuzzer calls with one input after the other.
namespace brevok::fuzz {

/// Says what the program promises about an input; a promise that it does not keep ends the run with HOLDS().
void check(const QByteArray &input);

[[noreturn]] void fail(const char *file, int line, const char *promise);

/// A folder in memory of this process's own, empty at first; it is gone at the end.
[[nodiscard]] QString scratchFolder();
/// Puts @p contents in the place of what is in the file at @p path.
void put(const QString &path, const QByteArray &contents);

/// @p input at its lines of four equals signs, in @p count parts; those that are not there are empty.
[[nodiscard]] QList<QByteArray> parts(const QByteArray &input, qsizetype count);

} // namespace brevok::fuzz

// NOLINTNEXTLINE(cppcoreguidelines-macro-usage): says what did not hold
#define HOLDS(promise) ((promise) ? void() : brevok::fuzz::fail(__FILE__, __LINE__, #promise))
