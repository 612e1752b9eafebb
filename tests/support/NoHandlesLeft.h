// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/resource.h>

/// While it lives, no further file can be opened (POSIX).
class NoHandlesLeft
{
public:
    NoHandlesLeft()
    {
        getrlimit(RLIMIT_NOFILE, &m_former);
        const rlimit none{0, m_former.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoHandlesLeft() { setrlimit(RLIMIT_NOFILE, &m_former); }
    NoHandlesLeft(const NoHandlesLeft&) = delete;
    NoHandlesLeft& operator=(const NoHandlesLeft&) = delete;

private:
    rlimit m_former{};
};
