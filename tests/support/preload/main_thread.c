// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// Preloaded, watches the main thread of a program. MAIN_THREAD_LOG gets a line for every call of it that names
// a path beneath MAIN_THREAD_FOLDER ("open PATH"), and for every time that it stayed away from its event loop
// for longer than MAIN_THREAD_LIMIT_MS ("held N ms after CALL PATH"). SLOW_DISK_MS delays, on every thread, what
// makes files there and what brings them to the disk.

#define _GNU_SOURCE
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <limits.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <time.h>
#include <unistd.h>

static char latest[256]; // of the main thread, like the next
static long long left_loop;
static pid_t watched;

// What the program starts has a main thread of its own, which may wait.
__attribute__((constructor)) static void watch_this_process_only(void)
{
    const char *name = "MAIN_THREAD_PROCESS";
    char number[16];
    snprintf(number, sizeof number, "%d", getpid());
    setenv(name, number, 0);
    watched = atoi(getenv(name));
}

static int on_main_thread(void)
{
    return syscall(SYS_gettid) == watched;
}

static long long milliseconds(void)
{
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1000000;
}

static void say(const char *line)
{
    const char *log = getenv("MAIN_THREAD_LOG");
    if (log != NULL) {
        const int file = (int)syscall(SYS_openat, AT_FDCWD, log, O_WRONLY | O_CREAT | O_APPEND, 0600);
        syscall(SYS_write, file, line, strlen(line));
        syscall(SYS_close, file);
    }
}

static int is_watched(const char *path)
{
    const char *folder = getenv("MAIN_THREAD_FOLDER");
    return path != NULL && folder != NULL && strncmp(path, folder, strlen(folder)) == 0;
}

static void be_slow(void)
{
    const char *delay = getenv("SLOW_DISK_MS");
    if (delay != NULL) {
        const long wanted = atol(delay);
        const struct timespec time = {wanted / 1000, wanted % 1000 * 1000000};
        nanosleep(&time, NULL);
    }
}

static void note(const char *call, const char *path, int slow)
{
    if (!is_watched(path)) {
        return;
    }
    if (on_main_thread()) {
        char line[PATH_MAX + 64];
        snprintf(latest, sizeof latest, "%s %s", call, path);
        snprintf(line, sizeof line, "%s %s\n", call, path);
        say(line);
    }
    if (slow) {
        be_slow();
    }
}

static void note_file(const char *call, int file)
{
    char name[64];
    char path[PATH_MAX];
    snprintf(name, sizeof name, "/proc/self/fd/%d", file);
    const long length = syscall(SYS_readlinkat, AT_FDCWD, name, path, sizeof path - 1);
    if (length > 0) {
        path[length] = '\0';
        note(call, path, 1);
    }
}

static void note_entering_loop(void)
{
    const char *limit = getenv("MAIN_THREAD_LIMIT_MS");
    if (limit == NULL || left_loop == 0 || !on_main_thread()) {
        return;
    }
    const long long held = milliseconds() - left_loop;
    if (held > atol(limit)) {
        char line[512];
        snprintf(line, sizeof line, "held %lld ms after %s\n", held, latest);
        say(line);
    }
}

static void note_leaving_loop(void)
{
    if (on_main_thread()) {
        left_loop = milliseconds();
        latest[0] = '\0';
    }
}

#define REAL(result, name, parameters)                                                                       \
    static result(*real) parameters;                                                                         \
    if (real == NULL) {                                                                                      \
        *(void **)&real = dlsym(RTLD_NEXT, #name);                                                           \
    }

#define WATCHED(result, name, parameters, arguments, slow)                                                   \
    result name parameters;                                                                                  \
    result name parameters                                                                                   \
    {                                                                                                        \
        REAL(result, name, parameters)                                                                       \
        note(#name, path, slow);                                                                             \
        return real arguments;                                                                               \
    }

#define WATCHED_OPEN(name, parameters, arguments)                                                     \
    int name parameters                                                                                      \
    {                                                                                                        \
        va_list more;                                                                                        \
        va_start(more, flags);                                                                               \
        const unsigned mode = va_arg(more, unsigned);                                                        \
        va_end(more);                                                                                        \
        REAL(int, name, parameters)                                                                          \
        note(#name, path, (flags & O_CREAT) != 0);                                                           \
        return real arguments;                                                                               \
    }

#define WATCHED_FILE(name)                                                                                   \
    int name(int file)                                                                                       \
    {                                                                                                        \
        REAL(int, name, (int))                                                                               \
        note_file(#name, file);                                                                              \
        return real(file);                                                                                   \
    }

WATCHED(int, stat, (const char *path, struct stat *facts), (path, facts), 0)
WATCHED(int, stat64, (const char *path, struct stat64 *facts), (path, facts), 0)
WATCHED(int, lstat, (const char *path, struct stat *facts), (path, facts), 0)
WATCHED(int, lstat64, (const char *path, struct stat64 *facts), (path, facts), 0)
WATCHED(int, fstatat, (int at, const char *path, struct stat *facts, int flags), (at, path, facts, flags), 0)
WATCHED(int, fstatat64, (int at, const char *path, struct stat64 *facts, int flags), (at, path, facts, flags),
    0)
WATCHED(int, statx, (int at, const char *path, int flags, unsigned mask, struct statx *facts),
    (at, path, flags, mask, facts), 0)
WATCHED(int, access, (const char *path, int mode), (path, mode), 0)
WATCHED(int, faccessat, (int at, const char *path, int mode, int flags), (at, path, mode, flags), 0)
WATCHED(char *, realpath, (const char *path, char *resolved), (path, resolved), 0)
WATCHED(ssize_t, readlink, (const char *path, char *target, size_t size), (path, target, size), 0)
WATCHED(DIR *, opendir, (const char *path), (path), 0)
WATCHED(int, inotify_add_watch, (int queue, const char *path, uint32_t mask), (queue, path, mask), 0)
WATCHED(int, mkdir, (const char *path, mode_t mode), (path, mode), 1)
WATCHED(int, chmod, (const char *path, mode_t mode), (path, mode), 1)
WATCHED(int, unlink, (const char *path), (path), 1)
WATCHED(int, rename, (const char *path, const char *to), (path, to), 1)
WATCHED_OPEN(open, (const char *path, int flags, ...), (path, flags, mode))
WATCHED_OPEN(open64, (const char *path, int flags, ...), (path, flags, mode))
WATCHED_OPEN(openat, (int at, const char *path, int flags, ...), (at, path, flags, mode))
WATCHED_OPEN(openat64, (int at, const char *path, int flags, ...), (at, path, flags, mode))
WATCHED_FILE(fsync)
WATCHED_FILE(fdatasync)

int poll(struct pollfd *files, nfds_t count, int timeout)
{
    REAL(int, poll, (struct pollfd *, nfds_t, int))
    note_entering_loop();
    const int ready = real(files, count, timeout);
    note_leaving_loop();
    return ready;
}

int ppoll(struct pollfd *files, nfds_t count, const struct timespec *timeout, const sigset_t *signals)
{
    REAL(int, ppoll, (struct pollfd *, nfds_t, const struct timespec *, const sigset_t *))
    note_entering_loop();
    const int ready = real(files, count, timeout, signals);
    note_leaving_loop();
    return ready;
}
