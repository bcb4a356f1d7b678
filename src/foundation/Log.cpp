// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Log.h"

#include "foundation/BrevokError.h"
#include "foundation/Record.h"
#include "foundation/Secrets.h"
#include "foundation/UntrustedText.h"

#include <QDateTime>
#include <QRegularExpression>

#include <atomic>
#include <cstdlib>

#include <unistd.h>

namespace brevok {

Q_LOGGING_CATEGORY(lcBrevok, "brevok", QtInfoMsg)

namespace {

std::atomic<int> currentLogLevel = 0;
std::atomic<void (*)()> afterLine = nullptr;

// One write call a line, so that lines of several threads and processes never mix.
void writeToStandardError(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    const QString line =
        QStringLiteral("%1 Tolvane Brevok[%2:%3] %4\n")
            .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")))
            .arg(::getpid())
            .arg(::gettid())
            .arg(messageForLog(message));
    const QByteArray bytes = line.toUtf8();
    [[maybe_unused]] const auto written =
        ::write(STDERR_FILENO, bytes.constData(), static_cast<size_t>(bytes.size()));
    if (const auto look = afterLine.load(std::memory_order_acquire); look != nullptr) {
        look();
    }
    if (type == QtFatalMsg) {
        std::abort();
    }
}

} // namespace

QString messageForLog(const QString &message)
{
    constexpr qsizetype longest = qsizetype{16} * 1024;
    // Only the log's own lines begin with a date, whatever a message of several lines holds.
    static const QRegularExpression foreignDate(QStringLiteral(R"(\n(?=\d{4}-\d\d-\d\d ))"));
    const QString text = withoutSecrets(message.left(2 * longest), Words::OursToo);
    return severalLines(text, longest).replace(foreignDate, QStringLiteral("\n\t"));
}

void logLine(const QString &line)
{
    qCInfo(lcBrevok).noquote() << line;
}

void logError(const std::optional<BrevokError> &error)
{
    if (!error) {
        return;
    }
    logLine(QStringLiteral("Error: %1").arg(orDash(error->description)));
    if (error->detailedErrors.isEmpty()) {
        logLine(QStringLiteral("  %1").arg(error->userInfoText()));
    }
    for (const BrevokError &detail : error->detailedErrors) {
        logLine(QStringLiteral("  DetailedError: %1").arg(detail.userInfoText()));
    }
}

bool detailedLog()
{
    return currentLogLevel.load(std::memory_order_relaxed) > 0;
}

void setLogLevel(int level)
{
    currentLogLevel.store(level, std::memory_order_relaxed);
}

void installLogFormat()
{
    qInstallMessageHandler(writeToStandardError);
}

void callAfterEachLine(void (*look)())
{
    afterLine.store(look, std::memory_order_release);
}

} // namespace brevok
