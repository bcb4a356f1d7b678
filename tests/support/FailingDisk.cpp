// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "support/FailingDisk.h"

#include <QThread>

#include <atomic>
#include <limits>
#include <map>
#include <mutex>

#include <sqlite3.h>

namespace brevok::testing {

namespace {

constexpr int never = std::numeric_limits<int>::max();

std::atomic<int> good = never;
std::atomic<int> tried = 0;
std::atomic<qint64> written = 0;
std::atomic<int> syncMs = 0;
sqlite3_vfs *realDisk = nullptr;
sqlite3_vfs disk = {};
sqlite3_io_methods real = {}; // of what is played here, the same for every file

bool refused()
{
    return tried++ >= good;
}

int writeFile(sqlite3_file *file, const void *bytes, int count, sqlite3_int64 offset)
{
    if (refused()) {
        return SQLITE_FULL;
    }
    written += count;
    return real.xWrite(file, bytes, count, offset);
}

int truncateFile(sqlite3_file *file, sqlite3_int64 size)
{
    return refused() ? SQLITE_IOERR_TRUNCATE : real.xTruncate(file, size);
}

int syncFile(sqlite3_file *file, int flags)
{
    for (int waited = 0; waited < syncMs; ++waited) {
        QThread::msleep(1);
    }
    return refused() ? SQLITE_IOERR_FSYNC : real.xSync(file, flags);
}

// The methods of a file, with ours among them. SQLite has others for a database than for its journal.
const sqlite3_io_methods *withOurs(const sqlite3_io_methods *methods)
{
    static std::mutex mutex;
    static std::map<const sqlite3_io_methods *, sqlite3_io_methods> known;
    const std::lock_guard lock(mutex);
    const auto [ours, isNew] = known.try_emplace(methods, *methods);
    if (isNew) {
        if (known.size() == 1) {
            real = *methods;
        }
        ours->second.iVersion = 1; // without the ways around these
        ours->second.xWrite = writeFile;
        ours->second.xTruncate = truncateFile;
        ours->second.xSync = syncFile;
    }
    return &ours->second;
}

int openFile(sqlite3_vfs *, const char *name, sqlite3_file *file, int flags, int *outFlags)
{
    file->pMethods = nullptr;
    if ((flags & SQLITE_OPEN_MAIN_JOURNAL) != 0 && refused()) {
        return SQLITE_CANTOPEN;
    }
    const int result = realDisk->xOpen(realDisk, name, file, flags, outFlags);
    if (file->pMethods != nullptr) {
        file->pMethods = withOurs(file->pMethods);
    }
    return result;
}

int removeFile(sqlite3_vfs *, const char *name, int sync)
{
    return refused() ? SQLITE_IOERR_DELETE : realDisk->xDelete(realDisk, name, sync);
}

} // namespace

FailingDisk::FailingDisk()
{
    realDisk = sqlite3_vfs_find(nullptr);
    disk = *realDisk;
    disk.zName = "failing-disk";
    disk.xOpen = openFile;
    disk.xDelete = removeFile;
    sqlite3_vfs_register(&disk, 1);
    heal();
}

FailingDisk::~FailingDisk()
{
    heal();
    sqlite3_vfs_register(realDisk, 1);
    sqlite3_vfs_unregister(&disk);
}

void FailingDisk::failAfter(int writes)
{
    good = writes;
    tried = 0;
    written = 0;
}

void FailingDisk::heal()
{
    slowDown(0);
    failAfter(never);
}

void FailingDisk::slowDown(int milliseconds)
{
    syncMs = milliseconds;
}

qint64 FailingDisk::bytes()
{
    return written;
}

} // namespace brevok::testing
