// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// Preloaded, plays a mount whose server is gone: whatever asks for a path that begins with DEAD_MOUNT waits
// while the file DEAD_MOUNT_GATE exists. Paths that the main thread asks for are added to DEAD_MOUNT_LOG.

#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

static void pass_gate(const char *path)
{
    const char *mount = getenv("DEAD_MOUNT");
    const char *gate = getenv("DEAD_MOUNT_GATE");
    const char *log = getenv("DEAD_MOUNT_LOG");
    if (path == NULL || mount == NULL || gate == NULL || strncmp(path, mount, strlen(mount)) != 0) {
        return;
    }
    if (log != NULL && syscall(SYS_gettid) == getpid()) {
        const int file = (int)syscall(SYS_openat, AT_FDCWD, log, O_WRONLY | O_CREAT | O_APPEND, 0600);
        syscall(SYS_write, file, path, strlen(path));
        syscall(SYS_write, file, "\n", 1L);
        syscall(SYS_close, file);
    }
    while (syscall(SYS_faccessat, AT_FDCWD, gate, F_OK) == 0) {
        poll(NULL, 0, 10);
    }
}

#define PLAYED(result, name, parameters, arguments)                                                          \
    result name parameters;                                                                                  \
    result name parameters                                                                                   \
    {                                                                                                        \
        pass_gate(path);                                                                                     \
        result(*real) parameters;                                                                            \
        *(void **)&real = dlsym(RTLD_NEXT, #name);                                                           \
        return real arguments;                                                                               \
    }

PLAYED(int, stat, (const char *path, void *facts), (path, facts))
PLAYED(int, stat64, (const char *path, void *facts), (path, facts))
PLAYED(int, lstat, (const char *path, void *facts), (path, facts))
PLAYED(int, lstat64, (const char *path, void *facts), (path, facts))
PLAYED(int, fstatat, (int at, const char *path, void *facts, int flags), (at, path, facts, flags))
PLAYED(int, fstatat64, (int at, const char *path, void *facts, int flags), (at, path, facts, flags))
PLAYED(int, statx, (int at, const char *path, int flags, unsigned mask, void *facts),
    (at, path, flags, mask, facts))
PLAYED(int, access, (const char *path, int mode), (path, mode))
PLAYED(char *, realpath, (const char *path, char *resolved), (path, resolved))
PLAYED(ssize_t, readlink, (const char *path, char *target, size_t size), (path, target, size))
PLAYED(void *, opendir, (const char *path), (path))
PLAYED(int, inotify_add_watch, (int queue, const char *path, uint32_t mask), (queue, path, mask))

#define PLAYED_OPEN(name)                                                                                    \
    int name(const char *path, int flags, ...)                                                               \
    {                                                                                                        \
        pass_gate(path);                                                                                     \
        va_list more;                                                                                        \
        va_start(more, flags);                                                                               \
        const unsigned mode = va_arg(more, unsigned);                                                        \
        va_end(more);                                                                                        \
        int (*real)(const char *, int, ...);                                                                 \
        *(void **)&real = dlsym(RTLD_NEXT, #name);                                                           \
        return real(path, flags, mode);                                                                      \
    }

PLAYED_OPEN(open)
PLAYED_OPEN(open64)
