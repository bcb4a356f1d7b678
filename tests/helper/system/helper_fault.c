// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// Preloaded into the helper. It makes a call the process's last: KILL_AT is "mkdirat", of a hidden folder, or
// "unlinkat".
// Does what the owner of a folder could do at the worst moment: with ATTACK_DECOY it swaps each hidden
// folder, as soon as that is made, for the one of this name beside it, and each link for the file
// ATTACK_SECRET; with ATTACK_PIPE, the file "swapped" for that pipe when it has been looked at. While there
// is a file STALL_WHILE, folders of its owner stand still; one that does makes that file executable.

#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#define REAL(name, type) ((type)dlsym(RTLD_NEXT, #name))

static void kill_at(const char *call)
{
    if (getenv("KILL_AT") != NULL && strcmp(getenv("KILL_AT"), call) == 0) {
        kill(getpid(), SIGKILL);
    }
}

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

int mkdirat(int folder, const char *name, mode_t mode)
{
    stall(folder);
    if (name[0] == '.') {
        kill_at("mkdirat");
    }
    const int result = REAL(mkdirat, int (*)(int, const char *, mode_t))(folder, name, mode);
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
    const int result = REAL(symlinkat, int (*)(const char *, int, const char *))(target, folder, name);
    if (result == 0 && getenv("ATTACK_SECRET") != NULL) {
        syscall(SYS_renameat2, AT_FDCWD, getenv("ATTACK_SECRET"), folder, name, 0);
    }
    return result;
}

int renameat2(int from, const char *name, int to, const char *other, unsigned flags)
{
    stall(from);
    return REAL(renameat2, int (*)(int, const char *, int, const char *, unsigned))(
        from, name, to, other, flags);
}

int unlinkat(int folder, const char *name, int flags)
{
    kill_at("unlinkat");
    return REAL(unlinkat, int (*)(int, const char *, int))(folder, name, flags);
}
