// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Log.h"

#include "foundation/BrevokError.h"
#include "foundation/Record.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <atomic>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace brevok {

Q_LOGGING_CATEGORY(lcBrevok, "brevok", QtInfoMsg)

namespace {

std::atomic<int> currentLogLevel = 0;

// One write call a line, so that lines of several threads and processes never mix.
void writeToStandardError(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    const QString line =
        QStringLiteral("%1 Tolvane Brevok[%2:%3] %4\n")
            .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")))
            .arg(::getpid())
            .arg(::gettid())
            .arg(message);
    const QByteArray bytes = line.toUtf8();
    [[maybe_unused]] const auto written =
        ::write(STDERR_FILENO, bytes.constData(), static_cast<size_t>(bytes.size()));
    if (type == QtFatalMsg) {
        std::abort();
    }
}

} // namespace

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

bool moveLongLogAside(const QString &path)
{
    const QFileInfo file(path);
    if (file.isSymLink() || !file.isFile() || file.size() <= longestLog) {
        return false;
    }
    const std::string from = QFile::encodeName(path).toStdString();
    std::error_code failure;
    std::filesystem::rename(from, from + ".1", failure);
    return !failure;
}

bool redirectStandardError(const QString &path)
{
    if (!QDir().mkpath(QFileInfo(path).absolutePath())) {
        return false;
    }
    const int file =
        ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (file < 0) {
        return false;
    }
    const bool redirected = ::dup2(file, STDERR_FILENO) >= 0;
    ::close(file);
    return redirected;
}

} // namespace brevok
