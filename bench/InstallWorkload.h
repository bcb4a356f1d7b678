// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "install/InstallRig.h"

namespace brevok::bench {

/// Installs and removes tiny plug-ins, each a package of its own, beside a catalogue of any size.
class InstallWorkload {
public:
    static constexpr int several = 40;

    explicit InstallWorkload(int definitions, int plugins = several);
    /// Downloads and installs them. @return how many are there then
    qsizetype install();
    /// Removes them and their archives.
    void remove();
    /// Takes a list of plug-ins, until it is stored and the statuses are calculated. @return whether it is
    [[nodiscard]] bool refresh(const QByteArray &list);

private:
    void waitUntilSettled(int operations);

    testing::InstallRig m_rig;
    QString m_target;
    int m_plugins;
    int m_ended = 0;
};

} // namespace brevok::bench
