// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/PrivateFile.h"

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/FileStateOf.h"
#include "platform/linux/files/SafePath.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevok {

namespace {

// A shortage, of rights too, is no reason to take the user's settings away.
PrivateFile unopened(const QByteArray &path, int code)
{
    struct stat facts = {};
    if (code == ENOENT || code == ENOTDIR) {
        if (::lstat(path.constData(), &facts) != 0) {
            return {.state = PrivateFile::State::Missing};
        }
        return {.state = PrivateFile::State::Unusable, .reason = QStringLiteral("a link that leads nowhere")};
    }
    constexpr std::array lasting = {ELOOP, ENXIO, EIO, ENODEV};
    const bool lasts = std::find(lasting.begin(), lasting.end(), code) != lasting.end();
    return {.state = lasts ? PrivateFile::State::Unusable : PrivateFile::State::Failed,
        .reason = qt_error_string(code)};
}

} // namespace

PrivateFile readPrivateFile(const QString &path, const FileState &known, qint64 limit)
{
    using State = PrivateFile::State;
    const QByteArray name = QFile::encodeName(path);
    // Without O_NONBLOCK a FIFO in the file's place would be waited for.
    const FileDescriptor file(::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat facts = {};
    if (!file || ::fstat(file.get(), &facts) != 0) {
        return unopened(name, errno);
    }
    if (!S_ISREG(facts.st_mode)) {
        return {.state = State::Unusable, .reason = QStringLiteral("not a file")};
    }
    if ((facts.st_mode & (S_IRWXG | S_IRWXO)) != 0 && ::fchmod(file.get(), S_IRUSR | S_IWUSR) == 0) {
        ::fstat(file.get(), &facts);
    }
    if (facts.st_size > limit) {
        return {.state = State::Unusable, .reason = QStringLiteral("too large")};
    }
    const FileState stamp = fileState(facts);
    if (stamp == known) {
        return {.state = State::Unchanged, .stamp = stamp};
    }
    std::optional<QByteArray> contents = safepath::readBytes(file.get(), 0, facts.st_size);
    if (!contents) {
        return unopened(name, errno);
    }
    return {.state = State::Read, .contents = std::move(*contents), .stamp = stamp};
}

bool writePrivateFile(const QString &path, const QByteArray &contents, std::optional<BrevokError> *error)
{
    const QByteArray name = QFile::encodeName(path);
    ::unlink(name.constData());
    FileDescriptor file(::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (file && safepath::writeAll(file.get(), contents.constData(), static_cast<size_t>(contents.size()))
        && ::fsync(file.get()) == 0 && file.close()) {
        return true;
    }
    const int code = errno;
    if (file) {
        ::unlink(name.constData());
    }
    *error = BrevokError{.domain = QString::fromLatin1(fileErrorDomain),
        .code = code,
        .description = qt_error_string(code),
        .details = {{QStringLiteral("Path"), path}}};
    return false;
}

bool makePrivateFolder(const QString &path)
{
    if (QFileInfo(path).isDir()) {
        return true;
    }
    QDir().mkpath(QFileInfo(path).absolutePath());
    return ::mkdir(QFile::encodeName(path).constData(), S_IRWXU) == 0 || QFileInfo(path).isDir();
}

QString nameAside(const QString &path, const QString &what)
{
    const QString stem =
        path + u'.' + what + u'-' + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString name = stem;
    struct stat facts = {};
    for (int i = 2; ::lstat(QFile::encodeName(name).constData(), &facts) == 0; ++i) {
        name = stem + u'-' + QString::number(i);
    }
    return name;
}

} // namespace brevok
