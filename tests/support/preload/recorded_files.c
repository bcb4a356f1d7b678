// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// Preloaded, adds a line to the file RECORD_LOG for what changes files beneath RECORD_FOLDER: "write NAME",
// "make NAME" (a folder), "sync NAME", "syncfs NAME", "rename FROM TO" and "remove NAME", by the names that
// stand there.

#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

// The name beneath the folder, NULL for others.
static const char *beneath(const char *path)
{
    const char *folder = getenv("RECORD_FOLDER");
    if (path == NULL || folder == NULL || strncmp(path, folder, strlen(folder)) != 0) {
        return NULL;
    }
    path += strlen(folder);
    return *path == '\0' ? "." : *path == '/' ? path + 1 : NULL;
}

static void record(const char *what, const char *path, const char *other)
{
    char line[2 * PATH_MAX];
    const char *name = beneath(path);
    if (name == NULL) {
        return;
    }
    const char *to = other == NULL ? NULL : beneath(other);
    const int length = snprintf(line, sizeof line, "%s %s%s%s\n", what, name, to ? " " : "", to ? to : "");
    const int file = (int)syscall(SYS_openat, AT_FDCWD, getenv("RECORD_LOG"), O_WRONLY | O_CREAT | O_APPEND, 0600);
    syscall(SYS_write, file, line, (long)length);
    syscall(SYS_close, file);
}

static void record_file(const char *what, int file)
{
    char link[64];
    char path[PATH_MAX];
    snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    const long length = syscall(SYS_readlinkat, AT_FDCWD, link, path, sizeof path - 1);
    if (length > 0) {
        path[length] = '\0';
        record(what, path, NULL);
    }
}

// The path of a name in an open folder.
static const char *path_at(int folder, const char *name, char *path)
{
    char link[64];
    if (folder == AT_FDCWD || name[0] == '/') {
        return name;
    }
    snprintf(link, sizeof link, "/proc/self/fd/%d", folder);
    const long length = syscall(SYS_readlinkat, AT_FDCWD, link, path, PATH_MAX - 1);
    snprintf(path + (length > 0 ? length : 0), (size_t)(PATH_MAX - (length > 0 ? length : 0)), "/%s", name);
    return path;
}

static void record_at(const char *what, int folder, const char *name, int other_folder, const char *other)
{
    char path[PATH_MAX];
    char other_path[PATH_MAX];
    record(what, path_at(folder, name, path), other == NULL ? NULL : path_at(other_folder, other, other_path));
}

#define RECORDED(result, name, parameters, arguments, recording)                                             \
    result name parameters;                                                                                  \
    result name parameters                                                                                   \
    {                                                                                                        \
        result(*real) parameters;                                                                            \
        *(void **)&real = dlsym(RTLD_NEXT, #name);                                                           \
        const result value = real arguments;                                                                 \
        const int code = errno;                                                                              \
        if (value >= 0) {                                                                                    \
            recording;                                                                                       \
        }                                                                                                    \
        errno = code;                                                                                        \
        return value;                                                                                        \
    }

RECORDED(ssize_t, write, (int file, const void *bytes, size_t size), (file, bytes, size), record_file("write", file))
RECORDED(ssize_t, pwrite, (int file, const void *bytes, size_t size, off_t at), (file, bytes, size, at),
    record_file("write", file))
RECORDED(ssize_t, pwrite64, (int file, const void *bytes, size_t size, off64_t at), (file, bytes, size, at),
    record_file("write", file))
RECORDED(ssize_t, writev, (int file, const struct iovec *parts, int count), (file, parts, count),
    record_file("write", file))
RECORDED(int, fsync, (int file), (file), record_file("sync", file))
RECORDED(int, fdatasync, (int file), (file), record_file("sync", file))
RECORDED(int, rename, (const char *from, const char *to), (from, to), record("rename", from, to))
RECORDED(int, renameat2, (int fromAt, const char *from, int toAt, const char *to, unsigned flags),
    (fromAt, from, toAt, to, flags), record_at("rename", fromAt, from, toAt, to))
RECORDED(int, renameat, (int fromAt, const char *from, int toAt, const char *to), (fromAt, from, toAt, to),
    record_at("rename", fromAt, from, toAt, to))
RECORDED(int, unlinkat, (int folder, const char *name, int flags), (folder, name, flags),
    record_at("remove", folder, name, -1, NULL))
RECORDED(int, mkdirat, (int folder, const char *name, mode_t mode), (folder, name, mode),
    record_at("make", folder, name, -1, NULL))
RECORDED(ssize_t, sendfile, (int to, int from, off_t *at, size_t size), (to, from, at, size),
    record_file("write", to))
RECORDED(int, syncfs, (int file), (file), record_file("syncfs", file))
RECORDED(int, unlink, (const char *path), (path), record("remove", path, NULL))
