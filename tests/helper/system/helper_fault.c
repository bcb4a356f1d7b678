// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// Preloaded into the helper: counts the calls that change files while there is a file FAULT_WHEN, and makes
// the one numbered FAULT_AT the process's last (FAULT=kill) or one that finds the disk full (FAULT=full). It
// removes that file when it strikes.
// Does what the owner of a folder could do at the worst moment: with ATTACK_DECOY it swaps each hidden
// folder, as soon as that is made, for the one of this name beside it, and each link for the file
// ATTACK_SECRET; with ATTACK_PIPE, the file "swapped" for that pipe when it has been looked at. While there
// is a file STALL_WHILE, folders of its owner stand still; one that does makes that file executable.

#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

static atomic_int calls;

/// Whether this call fails.
static int fault(int allocates)
{
    const char *at = getenv("FAULT_AT");
    if (at == NULL || access(getenv("FAULT_WHEN"), F_OK) != 0
        || atomic_fetch_add(&calls, 1) + 1 != atoi(at)) {
        return 0;
    }
    syscall(SYS_unlink, getenv("FAULT_WHEN"));
    if (strcmp(getenv("FAULT"), "kill") == 0) {
        kill(getpid(), SIGKILL);
    }
    errno = ENOSPC;
    return allocates;
}

static int regular(int file)
{
    struct stat facts;
    return fstat(file, &facts) == 0 && S_ISREG(facts.st_mode);
}

#define REAL(name, type) ((type)dlsym(RTLD_NEXT, #name))

static void stall(int folder)
{
    struct stat facts;
    struct stat whose;
    while (getenv("STALL_WHILE") != NULL && stat(getenv("STALL_WHILE"), &whose) == 0
        && fstat(folder, &facts) == 0 && facts.st_uid == whose.st_uid) {
        chmod(getenv("STALL_WHILE"), S_IRUSR | S_IXUSR);
        usleep(10000);
    }
}

ssize_t write(int file, const void *bytes, size_t size)
{
    return file > 2 && regular(file) && fault(1)
        ? -1
        : REAL(write, ssize_t(*)(int, const void *, size_t))(file, bytes, size);
}

static ssize_t sent(ssize_t (*real)(int, int, off_t *, size_t), int to, int from, off_t *at, size_t size)
{
    return regular(to) && fault(1) ? -1 : real(to, from, at, size);
}

ssize_t sendfile(int to, int from, off_t *at, size_t size)
{
    return sent(REAL(sendfile, ssize_t(*)(int, int, off_t *, size_t)), to, from, at, size);
}

int fsync(int file)
{
    return fault(1) ? -1 : REAL(fsync, int (*)(int))(file);
}

int syncfs(int file)
{
    return fault(1) ? -1 : REAL(syncfs, int (*)(int))(file);
}

int mkdirat(int folder, const char *name, mode_t mode)
{
    stall(folder);
    const int result = fault(1) ? -1 : REAL(mkdirat, int (*)(int, const char *, mode_t))(folder, name, mode);
    if (result == 0 && name[0] == '.' && getenv("ATTACK_DECOY") != NULL) {
        syscall(SYS_renameat2, folder, name, folder, getenv("ATTACK_DECOY"), RENAME_EXCHANGE);
    }
    return result;
}

int fstatat(int folder, const char *name, struct stat *facts, int flags)
{
    stall(folder);
    const int result =
        REAL(fstatat, int (*)(int, const char *, struct stat *, int))(folder, name, facts, flags);
    if (result == 0 && strcmp(name, "swapped") == 0 && getenv("ATTACK_PIPE") != NULL) {
        syscall(SYS_renameat2, AT_FDCWD, getenv("ATTACK_PIPE"), folder, name, RENAME_EXCHANGE);
    }
    return result;
}

int symlinkat(const char *target, int folder, const char *name)
{
    const int result =
        fault(1) ? -1 : REAL(symlinkat, int (*)(const char *, int, const char *))(target, folder, name);
    if (result == 0 && getenv("ATTACK_SECRET") != NULL) {
        syscall(SYS_renameat2, AT_FDCWD, getenv("ATTACK_SECRET"), folder, name, 0);
    }
    return result;
}

int renameat(int from, const char *name, int to, const char *other)
{
    return fault(1) ? -1
                    : REAL(renameat, int (*)(int, const char *, int, const char *))(from, name, to, other);
}

int renameat2(int from, const char *name, int to, const char *other, unsigned flags)
{
    stall(from);
    return fault(1) ? -1
                    : REAL(renameat2, int (*)(int, const char *, int, const char *, unsigned))(
                        from, name, to, other, flags);
}

int unlinkat(int folder, const char *name, int flags)
{
    fault(0);
    return REAL(unlinkat, int (*)(int, const char *, int))(folder, name, flags);
}

int unlink(const char *name)
{
    fault(0);
    return REAL(unlink, int (*)(const char *))(name);
}

int fchown(int file, uid_t user, gid_t group)
{
    return fault(1) ? -1 : REAL(fchown, int (*)(int, uid_t, gid_t))(file, user, group);
}

int fchmod(int file, mode_t mode)
{
    return fault(1) ? -1 : REAL(fchmod, int (*)(int, mode_t))(file, mode);
}
