// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/VeltError.h"

#include <array>
#include <cstddef>
#include <span>

/// A 1-based array of fixed size, as the time periods are numbered. An index outside 1 to N raises 9.
template <typename T, std::size_t N>
class Array1
{
public:
    constexpr Array1() : m_items{} {}
    explicit constexpr Array1(const T& value) { Fill(value); }
    constexpr explicit Array1(const std::array<T, N>& items) : m_items(items) {}

    T& operator()(std::ptrdiff_t i) { return m_items[Checked(i)]; }
    const T& operator()(std::ptrdiff_t i) const { return m_items[Checked(i)]; }

    constexpr void Fill(const T& value) { m_items.fill(value); }
    static constexpr std::ptrdiff_t Size() { return static_cast<std::ptrdiff_t>(N); }

    /// All N items, counted from 0: for loops that have checked their bounds and for whole copies.
    std::span<T, N> All() { return m_items; }
    std::span<const T, N> All() const { return m_items; }

    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

    bool operator==(const Array1&) const = default;

private:
    static std::size_t Checked(std::ptrdiff_t i)
    {
        if (i < 1 || i > Size()) [[unlikely]]
            RaiseSubscript();
        return static_cast<std::size_t>(i - 1);
    }

    std::array<T, N> m_items;
};
