// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#ifdef __cplusplus
extern "C" {
#endif

enum { FAIL_NEVER = -1, FAIL_BY_KILL = 0 };

// From now on the calls of this program that change something beneath the folder, or open something there,
// are counted. The one numbered @p at fails with the errno @p code, or is the program's last; with @p full
// every later one that needs room on the disk fails too. Not for several threads.
void fail_calls(const char *folder, int at, int code, int full);
// The one numbered @p at finds what @p change did right before it.
void change_before_call(const char *folder, int at, void (*change)(void *), void *about);
// How many there have been. None is counted any more.
int end_failing_calls(void);

#ifdef __cplusplus
}
#endif
