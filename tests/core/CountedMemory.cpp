// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CountedMemory.h"

#include <cstdlib>
#include <new>

namespace
{
long g_requests = 0;
} // namespace

long RequestsForMemory()
{
    return g_requests;
}

void* operator new(std::size_t size)
{
    ++g_requests;
    if (void* memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
