// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "fuzz/Fuzz.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace {

// What the program logs about foreign bytes is no finding; what Qt warns of is.
void hear(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg) {
        brevok::fuzz::fail("Qt", 0, message.toUtf8().constData());
    }
}

} // namespace

namespace brevok::fuzz {

void fail(const char *file, int line, const char *promise)
{
    std::fprintf(stderr, "%s:%d: this does not hold: %s\n", file, line, promise);
    std::abort();
}

QString scratchFolder()
{
    struct Scratch {
        QTemporaryDir folder{(QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm")
                                                                                 : QDir::tempPath())
            + QStringLiteral("/brevok-fuzz-XXXXXX")};
        ~Scratch()
        {
            // Qt cannot remove what has a name that is no text.
            folder.setAutoRemove(false);
            std::error_code ignored;
            std::filesystem::remove_all(folder.path().toStdString(), ignored);
        }
    };
    static Scratch scratch;
    return scratch.folder.path();
}

void put(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    HOLDS(file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size());
}

QList<QByteArray> parts(const QByteArray &input, qsizetype count)
{
    const QByteArray separator = "====\n";
    QList<QByteArray> found;
    qsizetype from = 0;
    while (found.size() + 1 < count) {
        const qsizetype end = input.indexOf(separator, from);
        found.append(input.sliced(from, (end < 0 ? input.size() : end) - from));
        from = end < 0 ? input.size() : end + separator.size();
    }
    found.append(input.sliced(from));
    return found;
}

} // namespace brevok::fuzz

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static const QCoreApplication application(*argc, *argv);
    qInstallMessageHandler(hear);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    brevok::fuzz::check(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    return 0;
}
