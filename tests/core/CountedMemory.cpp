// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CountedMemory.h"

#include <algorithm>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace
{
long g_requests = 0;
long g_held = 0;
long g_mostHeld = 0;

void GiveBack(void* memory)
{
    g_held -= static_cast<long>(malloc_usable_size(memory));
    std::free(memory);
}
} // namespace

long RequestsForMemory()
{
    return g_requests;
}

long BytesHeld()
{
    return g_held;
}

long MostBytesHeld()
{
    return g_mostHeld;
}

void ForgetPeak()
{
    g_mostHeld = g_held;
}

void* operator new(std::size_t size)
{
    ++g_requests;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        g_held += static_cast<long>(malloc_usable_size(memory));
        g_mostHeld = std::max(g_mostHeld, g_held);
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    GiveBack(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    GiveBack(memory);
}
