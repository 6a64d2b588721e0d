// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <csignal>
#include <sys/resource.h>

namespace dorvane::testing {

// Lets no file of this process grow beyond a size, as a full disk would.
class FullDisk {
public:
    FullDisk() : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_limit);
        const rlimit small{100'000, m_limit.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_limit);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_limit{};
    void (*m_handler)(int);
};

} // namespace dorvane::testing
