// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <array>

#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brevok::testing {

/// While it lives, root's powers over files are off for this thread, so that permission bits mean something
/// to a test that runs as root. No change for anybody else.
class WithoutPrivileges final {
public:
    WithoutPrivileges()
    {
        m_known = ::syscall(SYS_capget, &m_header, m_before.data()) == 0;
        std::array<__user_cap_data_struct, 2> without = m_before;
        without[0].effective &= ~(
            (1U << CAP_CHOWN) | (1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH) | (1U << CAP_FOWNER));
        if (m_known) {
            ::syscall(SYS_capset, &m_header, without.data());
        }
    }
    ~WithoutPrivileges()
    {
        if (m_known) {
            ::syscall(SYS_capset, &m_header, m_before.data());
        }
    }
    Q_DISABLE_COPY_MOVE(WithoutPrivileges)

private:
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, 2> m_before{};
    bool m_known = false;
};

} // namespace brevok::testing
