// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// Preloaded, plays a world that goes wrong. The folder CHAOS_WORLD says how, in files that may come and go:
//     clock    the seconds by which the clock is wrong
//     full     the folder whose disk is full; a line each
//     strike   "ID PROGRAM FOLDER NUMBER kill|full": the call of that number, among those of the program that
//              change files beneath the folder, is the program's last, or is where the disk of that folder is
//              full. Then the file "struck" tells which call it was, and "strike" is gone.

#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <pthread.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <time.h>
#include <unistd.h>

enum { TEXT = 2 * PATH_MAX };

static const char *place(const char *name, char *path)
{
    snprintf(path, PATH_MAX, "%s/%s", getenv("CHAOS_WORLD"), name);
    return path;
}

// @return whether there is such a file
static int text_of(const char *name, char *text)
{
    char path[PATH_MAX];
    if (getenv("CHAOS_WORLD") == NULL) {
        return 0;
    }
    const int file = (int)syscall(SYS_openat, AT_FDCWD, place(name, path), O_RDONLY | O_CLOEXEC);
    const long length = file < 0 ? -1 : syscall(SYS_read, file, text, TEXT - 1L);
    syscall(SYS_close, file);
    text[length < 0 ? 0 : length] = '\0';
    return length >= 0;
}

static void write_text(const char *name, const char *text)
{
    char path[PATH_MAX];
    const int file = (int)syscall(
        SYS_openat, AT_FDCWD, place(name, path), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    syscall(SYS_write, file, text, strlen(text));
    syscall(SYS_close, file);
}

static int is_beneath(const char *path, const char *folder)
{
    const size_t length = strlen(folder);
    return length > 0 && strncmp(path, folder, length) == 0 && (path[length] == '/' || path[length] == '\0');
}

static int is_full(const char *path)
{
    char text[TEXT];
    if (!text_of("full", text)) {
        return 0;
    }
    char *rest = NULL;
    for (char *line = strtok_r(text, "\n", &rest); line != NULL; line = strtok_r(NULL, "\n", &rest)) {
        if (is_beneath(path, line)) {
            return 1;
        }
    }
    return 0;
}

static void strike(const char *call, const char *path)
{
    static pthread_mutex_t lock = PTHREAD_MUTEX_INITIALIZER;
    static char latest[64];
    static long count;
    char text[TEXT];
    char id[64];
    char program[64];
    char folder[PATH_MAX];
    char what[16];
    long number = 0;
    if (!text_of("strike", text)
        || sscanf(text, "%63s %63s %4095s %ld %15s", id, program, folder, &number, what) != 5
        || strcmp(program, program_invocation_short_name) != 0 || !is_beneath(path, folder)) {
        return;
    }
    pthread_mutex_lock(&lock);
    count = strcmp(latest, id) == 0 ? count + 1 : 1;
    snprintf(latest, sizeof latest, "%s", id);
    if (count == number) {
        char told[TEXT];
        char file[PATH_MAX];
        snprintf(told, sizeof told, "%s: %s %s\n", program, call, path);
        write_text("struck", told);
        syscall(SYS_unlinkat, AT_FDCWD, place("strike", file), 0);
        if (strcmp(what, "kill") == 0) {
            kill(getpid(), SIGKILL);
        }
        snprintf(told, sizeof told, "%s\n", folder);
        write_text("full", told);
    }
    pthread_mutex_unlock(&lock);
}

// @return whether the call fails
static int fails(const char *call, const char *path, int allocates)
{
    const int before = errno;
    strike(call, path);
    const int full = allocates && is_full(path);
    errno = full ? ENOSPC : before;
    return full;
}

static int fails_at(const char *call, int folder, const char *name, int allocates)
{
    char link[64];
    char path[TEXT] = "";
    if (getenv("CHAOS_WORLD") == NULL || name == NULL) {
        return 0;
    }
    if (name[0] != '/') {
        snprintf(link, sizeof link, folder == AT_FDCWD ? "/proc/self/cwd" : "/proc/self/fd/%d", folder);
        const long length = syscall(SYS_readlinkat, AT_FDCWD, link, path, PATH_MAX - 1L);
        path[length < 0 ? 0 : length] = '\0';
        strcat(path, "/");
    }
    strncat(path, name, PATH_MAX - 1);
    return fails(call, path, allocates);
}

static int fails_in(const char *call, int file, int allocates)
{
    struct stat facts;
    char link[64];
    char path[PATH_MAX];
    if (file <= 2 || getenv("CHAOS_WORLD") == NULL || fstat(file, &facts) != 0
        || (!S_ISREG(facts.st_mode) && !S_ISDIR(facts.st_mode))) {
        return 0;
    }
    snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    const long length = syscall(SYS_readlinkat, AT_FDCWD, link, path, PATH_MAX - 1L);
    path[length < 0 ? 0 : length] = '\0';
    return fails(call, path, allocates);
}

#define PLAYED(result, name, parameters, arguments, failure)                                                 \
    result name parameters;                                                                                  \
    result name parameters                                                                                   \
    {                                                                                                        \
        if (failure) {                                                                                       \
            return -1;                                                                                       \
        }                                                                                                    \
        result(*real) parameters;                                                                            \
        *(void **)&real = dlsym(RTLD_NEXT, #name);                                                           \
        return real arguments;                                                                               \
    }
#define PLAYED_FILE(result, name, parameters, arguments, allocates)                                          \
    PLAYED(result, name, parameters, arguments, fails_in(#name, file, allocates))

PLAYED_FILE(ssize_t, write, (int file, const void *bytes, size_t size), (file, bytes, size), 1)
PLAYED_FILE(ssize_t, writev, (int file, const struct iovec *parts, int count), (file, parts, count), 1)
PLAYED_FILE(ssize_t, pwrite, (int file, const void *bytes, size_t size, off_t at), (file, bytes, size, at), 1)
PLAYED_FILE(
    ssize_t, pwrite64, (int file, const void *bytes, size_t size, off64_t at), (file, bytes, size, at), 1)
PLAYED_FILE(ssize_t, sendfile, (int file, int from, off_t *at, size_t size), (file, from, at, size), 1)
PLAYED_FILE(ssize_t, sendfile64, (int file, int from, off64_t *at, size_t size), (file, from, at, size), 1)
PLAYED_FILE(int, fsync, (int file), (file), 0)
PLAYED_FILE(int, fdatasync, (int file), (file), 0)
PLAYED_FILE(int, syncfs, (int file), (file), 0)
PLAYED_FILE(int, ftruncate, (int file, off_t size), (file, size), 0)
PLAYED_FILE(int, ftruncate64, (int file, off64_t size), (file, size), 0)
PLAYED_FILE(int, fchmod, (int file, mode_t mode), (file, mode), 0)
PLAYED_FILE(int, fchown, (int file, uid_t user, gid_t group), (file, user, group), 0)
PLAYED(int, mkdir, (const char *name, mode_t mode), (name, mode), fails_at("mkdir", AT_FDCWD, name, 1))
PLAYED(
    int, mkdirat, (int at, const char *name, mode_t mode), (at, name, mode), fails_at("mkdirat", at, name, 1))
PLAYED(int, unlink, (const char *name), (name), fails_at("unlink", AT_FDCWD, name, 0))
PLAYED(int, unlinkat, (int at, const char *name, int flags), (at, name, flags),
    fails_at("unlinkat", at, name, 0))
PLAYED(int, rmdir, (const char *name), (name), fails_at("rmdir", AT_FDCWD, name, 0))
PLAYED(int, rename, (const char *name, const char *to), (name, to), fails_at("rename", AT_FDCWD, name, 0))
PLAYED(int, renameat, (int at, const char *name, int toAt, const char *to), (at, name, toAt, to),
    fails_at("renameat", at, name, 0))
PLAYED(int, renameat2, (int at, const char *name, int toAt, const char *to, unsigned flags),
    (at, name, toAt, to, flags), fails_at("renameat2", at, name, 0))
PLAYED(int, linkat, (int at, const char *name, int toAt, const char *to, int flags),
    (at, name, toAt, to, flags), fails_at("linkat", toAt, to, 1))
PLAYED(int, symlinkat, (const char *target, int at, const char *name), (target, at, name),
    fails_at("symlinkat", at, name, 1))

static long wrong_by(void)
{
    char text[TEXT];
    return text_of("clock", text) ? atol(text) : 0;
}

int clock_gettime(clockid_t clock, struct timespec *now)
{
    const int result = (int)syscall(SYS_clock_gettime, clock, now);
    if (result == 0 && (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE)) {
        now->tv_sec += wrong_by();
    }
    return result;
}

int gettimeofday(struct timeval *restrict now, void *restrict zone)
{
    const int result = (int)syscall(SYS_gettimeofday, now, zone);
    if (result == 0) {
        now->tv_sec += wrong_by();
    }
    return result;
}

time_t time(time_t *seconds)
{
    struct timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    if (seconds != NULL) {
        *seconds = now.tv_sec;
    }
    return now.tv_sec;
}
