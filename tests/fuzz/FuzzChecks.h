// SPDX-License-Identifier: GPL-3.0-or-later
// What the fuzz targets share: demands on an outcome, and the taking of choices from the first bytes of an
// input. Plain C++ without a test library, so that it is the same under the fuzzer and in the replay.
#pragma once

#include "base/Windows1252.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string>
#include <string_view>

using Bytes = std::span<const std::uint8_t>;

/// Ends the program when a rule is broken; the fuzzer then keeps the input.
inline void Demand(bool holds, std::string_view rule, std::string_view seen = {})
{
    if (holds)
        return;
    std::cerr << "Broken: " << rule << "\n" << seen << std::endl;
    std::abort();
}

inline std::string_view TextOf(Bytes bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

inline Bytes BytesOf(std::string_view text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// A text that the program shows: UTF-8, without control characters but line feeds.
inline void DemandShowable(std::string_view text)
{
    const auto isControl = [](char c) { return (c >= '\0' && c < ' ' && c != '\n') || c == '\x7f'; };
    Demand(IsUtf8(text), "texts are UTF-8", text);
    Demand(std::none_of(text.begin(), text.end(), isControl), "texts hold no control characters", text);
}

/// A failure that the program tells: it says something, and however much foreign text it quotes, one can
/// still read it.
inline void DemandSentence(std::string_view text)
{
    constexpr std::size_t kMostBytes = 4096; // some quotations of 300 characters of 4 bytes, and words
    Demand(!text.empty(), "a failure has a sentence");
    Demand(text.size() <= kMostBytes, "a failure can be read", text);
    DemandShowable(text);
}

/// Choices made by the first bytes of an input. Each byte has its fixed place, so that a change of one byte
/// changes one choice; behind the end all are 0.
class Choices
{
public:
    Choices(Bytes input, std::size_t count)
        : m_bytes(input.first(std::min(count, input.size()))), m_rest(input.subspan(m_bytes.size()))
    {
    }

    std::uint8_t Byte() { return m_at < m_bytes.size() ? m_bytes[m_at++] : std::uint8_t{0}; }
    std::size_t Below(std::size_t limit) { return Byte() % limit; } ///< limit >= 1
    template <typename List>
    const auto& OneOf(const List& list)
    {
        return list[Below(std::size(list))];
    }

    Bytes Rest() const { return m_rest; } ///< what follows the choices

private:
    Bytes m_bytes, m_rest;
    std::size_t m_at = 0;
};
