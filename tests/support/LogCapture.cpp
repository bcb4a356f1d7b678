// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "support/LogCapture.h"

#include "foundation/Log.h"

#include <algorithm>
#include <mutex>

namespace brevok::testing {

namespace {

std::mutex linesMutex;
QStringList capturedLines;
QtMessageHandler previousHandler = nullptr;

void capture(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtInfoMsg) {
        const std::lock_guard lock(linesMutex);
        capturedLines.append(messageForLog(message));
    } else if (previousHandler != nullptr) {
        previousHandler(type, context, message);
    }
}

} // namespace

LogCapture::LogCapture()
{
    clear();
    previousHandler = qInstallMessageHandler(capture);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(previousHandler);
    previousHandler = nullptr;
}

QStringList LogCapture::lines()
{
    const std::lock_guard lock(linesMutex);
    return capturedLines;
}

qsizetype LogCapture::count(const QString &line)
{
    return lines().count(line);
}

bool LogCapture::mentions(const QString &text)
{
    const QStringList captured = lines();
    return std::any_of(
        captured.cbegin(), captured.cend(), [&](const QString &line) { return line.contains(text); });
}

void LogCapture::clear()
{
    const std::lock_guard lock(linesMutex);
    capturedLines.clear();
}

} // namespace brevok::testing
