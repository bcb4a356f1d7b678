// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "support/FailingDisk.h"

#include <QThread>

#include <atomic>
#include <limits>

#include <sqlite3.h>

namespace brevok::testing {

namespace {

constexpr int never = std::numeric_limits<int>::max();

std::atomic<int> good = never;
sqlite3_vfs *realDisk = nullptr;
sqlite3_vfs disk = {};

// The real file follows in the same memory.
struct CountedFile {
    sqlite3_file base;
    sqlite3_file *real;
};

sqlite3_file *real(sqlite3_file *file)
{
    return reinterpret_cast<CountedFile *>(file)->real;
}

bool refused()
{
    return FailingDisk::tried++ >= good;
}

int writeFile(sqlite3_file *file, const void *bytes, int count, sqlite3_int64 offset)
{
    if (refused()) {
        return SQLITE_FULL;
    }
    FailingDisk::written += count;
    return real(file)->pMethods->xWrite(real(file), bytes, count, offset);
}

const sqlite3_io_methods methods = {
    .iVersion = 1,
    .xClose = [](sqlite3_file *f) { return real(f)->pMethods->xClose(real(f)); },
    .xRead = [](sqlite3_file *f, void *to, int count,
                 sqlite3_int64 at) { return real(f)->pMethods->xRead(real(f), to, count, at); },
    .xWrite = writeFile,
    .xTruncate =
        [](sqlite3_file *f, sqlite3_int64 size) {
            return refused() ? SQLITE_IOERR_TRUNCATE : real(f)->pMethods->xTruncate(real(f), size);
        },
    .xSync =
        [](sqlite3_file *f, int flags) {
            for (int waited = 0; waited < FailingDisk::syncMs; ++waited) {
                QThread::msleep(1);
            }
            return refused() ? SQLITE_IOERR_FSYNC : real(f)->pMethods->xSync(real(f), flags);
        },
    .xFileSize = [](sqlite3_file *f,
                     sqlite3_int64 *size) { return real(f)->pMethods->xFileSize(real(f), size); },
    .xLock = [](sqlite3_file *f, int lock) { return real(f)->pMethods->xLock(real(f), lock); },
    .xUnlock = [](sqlite3_file *f, int lock) { return real(f)->pMethods->xUnlock(real(f), lock); },
    .xCheckReservedLock = [](sqlite3_file *f,
                              int *out) { return real(f)->pMethods->xCheckReservedLock(real(f), out); },
    .xFileControl = [](sqlite3_file *f, int op,
                        void *out) { return real(f)->pMethods->xFileControl(real(f), op, out); },
    .xSectorSize = [](sqlite3_file *f) { return real(f)->pMethods->xSectorSize(real(f)); },
    .xDeviceCharacteristics =
        [](sqlite3_file *f) { return real(f)->pMethods->xDeviceCharacteristics(real(f)); },
    .xShmMap = nullptr,
    .xShmLock = nullptr,
    .xShmBarrier = nullptr,
    .xShmUnmap = nullptr,
    .xFetch = nullptr,
    .xUnfetch = nullptr,
};

int openFile(sqlite3_vfs *, const char *name, sqlite3_file *file, int flags, int *outFlags)
{
    auto *counted = reinterpret_cast<CountedFile *>(file);
    counted->base.pMethods = nullptr;
    counted->real = reinterpret_cast<sqlite3_file *>(counted + 1);
    counted->real->pMethods = nullptr;
    if ((flags & SQLITE_OPEN_MAIN_JOURNAL) != 0 && refused()) {
        return SQLITE_CANTOPEN;
    }
    const int result = realDisk->xOpen(realDisk, name, counted->real, flags, outFlags);
    if (counted->real->pMethods != nullptr) {
        counted->base.pMethods = &methods;
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
    disk.szOsFile = static_cast<int>(sizeof(CountedFile)) + realDisk->szOsFile;
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

} // namespace brevok::testing
