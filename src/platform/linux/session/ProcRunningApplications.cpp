// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/session/ProcRunningApplications.h"

#include "platform/linux/files/FileDescriptor.h"
#include "platform/PropertyLists.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <algorithm>
#include <charconv>
#include <csignal>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
// The C library of Debian 12 leaves the linkage out of this header.
extern "C" {
#include <sys/pidfd.h>
}

namespace brevok {

namespace {

constexpr QByteArrayView deletedSuffix = " (deleted)";

struct CloseFolder {
    void operator()(DIR *folder) const { ::closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

// 0 when the name is no process id.
qint64 processIdFrom(const char *name)
{
    const QByteArrayView digits(name);
    qint64 id = 0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), id);
    return error == std::errc() && end == digits.end() && id > 0 ? id : 0;
}

// Empty for kernel threads and for processes that are none of our business.
QByteArray executableOf(int processTable, const char *processId)
{
    QByteArray link(processId);
    link += "/exe";
    QByteArray target(PATH_MAX, Qt::Uninitialized);
    const ssize_t length =
        ::readlinkat(processTable, link.constData(), target.data(), static_cast<size_t>(target.size()));
    target.truncate(std::max<ssize_t>(length, 0));
    if (target.endsWith(deletedSuffix)) {
        target.chop(deletedSuffix.size());
    }
    return target;
}

// Field 22 of /proc/ID/stat; 0 when the process is gone. The command name before it may hold anything.
quint64 startTimeOf(int processTable, qint64 processId)
{
    const QByteArray name = QByteArray::number(processId) + "/stat";
    const FileDescriptor file(::openat(processTable, name.constData(), O_RDONLY | O_CLOEXEC));
    QByteArray text(1024, '\0');
    const ssize_t length =
        file ? ::read(file.get(), text.data(), static_cast<size_t>(text.size())) : ssize_t(-1);
    text.truncate(std::max<ssize_t>(length, 0));
    constexpr qsizetype fieldsBeforeStartTime = 20; // after the command name and one blank
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 1).split(' ');
    return fields.size() > fieldsBeforeStartTime ? fields[fieldsBeforeStartTime].toULongLong() : 0;
}

// What one look at the process table learns of bundles, so that ten processes of one cost one look at it.
class BundleFacts {
public:
    struct Facts {
        bool isBundle = false;
        QString name{};
        QString version{};
    };

    const Facts &of(const QString &path)
    {
        const auto known = m_known.constFind(path);
        return known != m_known.cend() ? *known : *m_known.insert(path, read(path));
    }

private:
    static Facts read(const QString &path)
    {
        if (!QFileInfo(path + QStringLiteral("/Contents/Info.plist")).isFile()) {
            return {};
        }
        const Record information = bundleInformation(path).value_or(Record());
        QString name = nonEmptyString(information.value(QStringLiteral("CFBundleDisplayName")));
        if (name.isEmpty()) {
            name = nonEmptyString(information.value(QStringLiteral("CFBundleName")));
        }
        if (name.isEmpty()) {
            name = QFileInfo(path).completeBaseName();
        }
        return {.isBundle = true,
            .name = name,
            .version = nonEmptyString(information.value(QStringLiteral("CFBundleVersion")))};
    }

    QHash<QString, Facts> m_known;
};

bool recognise(const QString &executable, BundleFacts &bundles, RunningApplication *application)
{
    const QString ending = QStringLiteral(".app/");
    for (qsizetype at = executable.indexOf(ending); at >= 0; at = executable.indexOf(ending, at + 1)) {
        const QString bundle = executable.first(at + ending.size() - 1);
        if (const BundleFacts::Facts &facts = bundles.of(bundle); facts.isBundle) {
            application->localizedName = facts.name;
            application->bundlePath = bundle;
            application->bundleVersion = facts.version;
            return true;
        }
    }
    return false;
}

// What tells one session of a user from another: the address of its bus, else its runtime folder. Empty for a
// process whose environment is not ours to read.
QByteArray sessionOf(int processTable, const QByteArray &processId)
{
    const QByteArray name = processId + "/environ";
    const FileDescriptor file(::openat(processTable, name.constData(), O_RDONLY | O_CLOEXEC));
    QFile stream;
    if (!file || !stream.open(file.get(), QIODevice::ReadOnly)) {
        return {};
    }
    const QList<QByteArray> variables = stream.readAll().split('\0');
    QByteArray runtimeFolder = "none";
    for (const QByteArray &variable : variables) {
        if (variable.startsWith("DBUS_SESSION_BUS_ADDRESS=")) {
            return variable;
        }
        if (variable.startsWith("XDG_RUNTIME_DIR=")) {
            runtimeFolder = variable;
        }
    }
    return runtimeFolder;
}

// A copy goes by the name that stands in its own Info.plist.
void recogniseCopy(const QString &executable, RunningApplication *application)
{
    const MainBundle copy = MainBundle::ofExecutable(executable);
    application->localizedName = copy.displayNames().constLast();
    application->bundlePath = executable;
    application->bundleVersion = copy.version();
}

} // namespace

ProcRunningApplications::ProcRunningApplications(const MainBundle &mainBundle)
    : m_ownExecutableName('/' + QFile::encodeName(QFileInfo(mainBundle.bundlePath()).fileName()))
{
}

QList<RunningApplication> ProcRunningApplications::list() const
{
    QList<RunningApplication> applications;
    const Folder folder(::opendir("/proc"));
    if (!folder) {
        return applications;
    }
    const int processTable = ::dirfd(folder.get());
    BundleFacts bundles;
    while (
        const dirent *entry = ::readdir(folder.get())) { // NOLINT(concurrency-mt-unsafe): a stream of our own
        RunningApplication application;
        application.processId = processIdFrom(entry->d_name);
        if (application.processId == 0 || application.processId == ::getpid()) {
            continue;
        }
        const QByteArray executable = executableOf(processTable, entry->d_name);
        // A copy in another session, or of another user, is no concern of this one.
        const bool copy = executable.endsWith(m_ownExecutableName)
            && sessionOf(processTable, entry->d_name) == sessionOf(processTable, "self");
        if (!copy && !executable.contains(".app/")) {
            continue;
        }
        application.startTime = startTimeOf(processTable, application.processId);
        if (copy) {
            recogniseCopy(QFile::decodeName(executable), &application);
        } else if (!recognise(QFile::decodeName(executable), bundles, &application)) {
            continue;
        }
        if (application.startTime != 0) {
            applications.append(application);
        }
    }
    std::sort(applications.begin(), applications.end(),
        [](const auto &one, const auto &other) { return one.processId < other.processId; });
    return applications;
}

bool ProcRunningApplications::terminate(const RunningApplication &application)
{
    const auto id = static_cast<pid_t>(application.processId);
    if (id <= 0 || id != application.processId) {
        return false;
    }
    // The descriptor holds on to the process: were the id used again from here on, the signal would not
    // follow it.
    const FileDescriptor process(::pidfd_open(id, 0));
    const FileDescriptor processTable(::open("/proc", O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!process || !processTable || startTimeOf(processTable.get(), id) != application.startTime) {
        return false;
    }
    struct stat facts = {};
    const QByteArray folder = QByteArray::number(application.processId);
    if (::fstatat(processTable.get(), folder.constData(), &facts, 0) != 0 || facts.st_uid != ::geteuid()) {
        return false;
    }
    return ::pidfd_send_signal(process.get(), SIGTERM, nullptr, 0) == 0;
}

} // namespace brevok
