// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// Calls of the C library, as a program that contains this file makes them.

#define _GNU_SOURCE
#include "failing_calls.h"

#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <linux/openat2.h>
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

static char folder[PATH_MAX];
static int fault_at;
static int fault_code = FAIL_NEVER;
static int stays_full;
static int calls;
static void (*change)(void *);
static void *about;

void fail_calls(const char *path, int at, int code, int full)
{
    snprintf(folder, sizeof folder, "%s", path);
    fault_at = at;
    fault_code = code;
    stays_full = full;
    calls = 0;
}

void change_before_call(const char *path, int at, void (*make)(void *), void *what)
{
    fail_calls(path, at, FAIL_NEVER, 0);
    change = make;
    about = what;
}

int end_failing_calls(void)
{
    change = NULL;
    folder[0] = '\0';
    return calls;
}

static int beneath(int file)
{
    char link[64];
    char path[PATH_MAX];
    snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    const ssize_t length = readlink(link, path, sizeof path - 1);
    return folder[0] != '\0' && length > 0 && strncmp(path, folder, strlen(folder)) == 0;
}

// Whether a call about an open file or folder fails.
static int fault(int file, int needs_room)
{
    const int before = errno;
    if (!beneath(file)) {
        errno = before;
        return 0;
    }
    ++calls;
    if (calls == fault_at && change != NULL) {
        void (*make)(void *) = change;
        change = NULL;
        folder[0] = '\0';
        make(about);
        errno = before;
        return 0;
    }
    if (calls == fault_at || (stays_full && needs_room && calls > fault_at)) {
        if (fault_code == FAIL_BY_KILL) {
            kill(getpid(), SIGKILL);
        }
        errno = fault_code;
        return 1;
    }
    errno = before;
    return 0;
}

#define FAILING(result, name, parameters, arguments, file, needs_room)                                       \
    result name parameters                                                                                   \
    {                                                                                                        \
        if (fault(file, needs_room)) {                                                                       \
            return -1;                                                                                       \
        }                                                                                                    \
        result(*real) parameters;                                                                            \
        *(void **)&real = dlsym(RTLD_NEXT, #name);                                                           \
        return real arguments;                                                                               \
    }

FAILING(ssize_t, write, (int file, const void *bytes, size_t size), (file, bytes, size), file, 1)
FAILING(ssize_t, sendfile, (int to, int from, off_t *at, size_t size), (to, from, at, size), to, 1)
FAILING(int, fsync, (int file), (file), file, 1)
FAILING(int, syncfs, (int file), (file), file, 1)
FAILING(int, fchown, (int file, uid_t user, gid_t group), (file, user, group), file, 0)
FAILING(int, fchmod, (int file, mode_t mode), (file, mode), file, 0)
FAILING(int, futimens, (int file, const struct timespec times[2]), (file, times), file, 0)
FAILING(int, mkdirat, (int at, const char *name, mode_t mode), (at, name, mode), at, 1)
FAILING(int, symlinkat, (const char *goal, int at, const char *name), (goal, at, name), at, 1)
FAILING(int, unlinkat, (int at, const char *name, int flags), (at, name, flags), at, 0)
FAILING(
    int, renameat, (int from, const char *name, int to, const char *other), (from, name, to, other), to, 0)
FAILING(int, renameat2, (int from, const char *name, int to, const char *other, unsigned flags),
    (from, name, to, other, flags), to, 0)
FAILING(int, fchownat, (int at, const char *name, uid_t user, gid_t group, int flags),
    (at, name, user, group, flags), at, 0)

int openat(int at, const char *name, int flags, ...)
{
    va_list more;
    va_start(more, flags);
    const mode_t mode = flags & (O_CREAT | O_TMPFILE) ? va_arg(more, mode_t) : 0;
    va_end(more);
    return fault(at, flags & O_CREAT) ? -1 : (int)syscall(SYS_openat, at, name, flags, mode);
}

long syscall(long number, ...)
{
    va_list more;
    va_start(more, number);
    long a[6];
    for (int i = 0; i < 6; ++i) {
        a[i] = va_arg(more, long);
    }
    va_end(more);
    if (number == SYS_openat2 && fault((int)a[0], (((struct open_how *)a[2])->flags & O_CREAT) != 0)) {
        return -1;
    }
    long (*real)(long, ...);
    *(void **)&real = dlsym(RTLD_NEXT, "syscall");
    return real(number, a[0], a[1], a[2], a[3], a[4], a[5]);
}
