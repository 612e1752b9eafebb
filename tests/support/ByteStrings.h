// SPDX-License-Identifier: GPL-3.0-or-later
// A small language for the bytes of files: `I32(1974) + Text("Ling", 40) + Zeros(48)`. It shares nothing with
// the readers and writers that it is held against.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>

namespace byte_strings
{
/// The lowest `count` bytes of `bits`, the lowest first.
inline std::string LittleEndian(std::uint64_t bits, std::size_t count)
{
    std::string bytes;
    for (; count > 0; --count, bits >>= 8U)
        bytes += static_cast<char>(bits & 0xFFU);
    return bytes;
}

inline std::string I16(std::int64_t value)
{
    return LittleEndian(static_cast<std::uint64_t>(value), 2);
}

inline std::string I32(std::int64_t value)
{
    return LittleEndian(static_cast<std::uint64_t>(value), 4);
}

inline std::string F32(float value)
{
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return LittleEndian(bits, 4);
}

inline std::string F64(double value)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return LittleEndian(bits, 8);
}

/// `bytes` with blanks behind them up to `width`.
inline std::string Text(std::string bytes, std::size_t width)
{
    return bytes + std::string(width - bytes.size(), ' ');
}

inline std::string Raw(std::initializer_list<int> bytes)
{
    std::string raw;
    for (const int byte : bytes)
        raw += static_cast<char>(byte);
    return raw;
}

inline std::string Zeros(std::size_t count)
{
    return std::string(count, '\0');
}

inline std::string Times(int count, const std::string& bytes)
{
    std::string all;
    for (; count > 0; --count)
        all += bytes;
    return all;
}

// A value under the tag of its type.
inline std::string Empty()
{
    return I16(0);
}
inline std::string Tagged16(std::int64_t value)
{
    return I16(2) + I16(value);
}
inline std::string Tagged32(std::int64_t value)
{
    return I16(3) + I32(value);
}
inline std::string TaggedFloat(float value)
{
    return I16(4) + F32(value);
}
inline std::string TaggedDouble(double value)
{
    return I16(5) + F64(value);
}
inline std::string Date(double days)
{
    return I16(7) + F64(days);
}
/// An array of one dimension, counted from 1.
inline std::string ArrayOf(std::int64_t count, const std::string& elements)
{
    return I16(8204) + I16(1) + I32(count) + I32(1) + elements;
}

/// `bytes` with what stands at `offset` replaced.
inline std::string Overwritten(std::string bytes, std::size_t offset, std::string_view with)
{
    return bytes.replace(offset, with.size(), with);
}

// Parts of a project file.

inline std::string ProjectHeader(const std::string& description, std::int64_t minTimeP, std::int64_t maxTimeP,
                                 std::int64_t loggedRuns = 0, std::int64_t scenarios = 0,
                                 std::int64_t points = 0)
{
    return Raw({0, 4, 0, 8, 6, 9}) + "ORVO" + Raw({3}) + I32(loggedRuns) + I32(scenarios) + I32(points) +
           Text(description, 40) + I32(minTimeP) + I32(maxTimeP) + Zeros(48);
}

/// A column that follows, with `first` in its first rows and -1 in the rest.
inline std::string PresentColumn(const std::string& format, std::initializer_list<float> first)
{
    std::string bytes = I16(-1) + Text(format, 20);
    for (const float value : first)
        bytes += F32(value);
    return bytes + Times(200 - static_cast<int>(first.size()), F32(-1.0F));
}

inline std::string AbsentColumns(int count)
{
    return Times(count, I16(0));
}

/// Behind the columns: numbers of logged fits and of scenarios.
inline std::string Counts(std::int64_t fits, std::int64_t scenarios)
{
    return I32(fits) + I32(scenarios);
}

inline std::string Scenario(const std::string& title, const std::string& vector, std::int64_t vecType)
{
    return Text(title, 30) + vector + I32(vecType);
}

/// The index record of a fit; one of 2000-01-01 at six in the evening.
inline std::string FitIndex(const std::string& name, std::int64_t model, std::int64_t errorModel,
                            std::int64_t start, std::int64_t theEnd, std::int64_t deleted = 0)
{
    return I16(deleted) + I32(model) + I32(errorModel) + Text(name, 50) + Date(36526.0) + Date(0.75) +
           I32(start) + I32(theEnd);
}
} // namespace byte_strings
