// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/Bytes.h"

#include "base/Text.h"
#include "base/Windows1252.h"

#include <array>
#include <bit>
#include <cstring>

namespace
{
/// As many bytes as the number has, the least significant first.
template <typename Unsigned>
Unsigned FromLittleEndian(std::string_view bytes)
{
    std::array<unsigned char, sizeof(Unsigned)> taken{};
    std::memcpy(taken.data(), bytes.data(), taken.size());
    std::uint64_t value = 0;
    for (std::size_t i = taken.size(); i-- > 0;)
        value = value << 8U | taken[i];
    return static_cast<Unsigned>(value);
}

template <typename Unsigned>
void Append(std::string& bytes, Unsigned value)
{
    std::array<char, sizeof value> taken{};
    for (std::size_t i = 0; i < taken.size(); ++i)
        taken[i] = static_cast<char>((static_cast<std::uint64_t>(value) >> (8U * i)) & 0xFFU);
    bytes.append(taken.data(), taken.size()); // at once: a body has thousands of numbers
}
} // namespace

RecordError::RecordError(std::size_t position, const std::string& what)
    : VeltError(ProgramError(errors::kReadObj, "ReadObj Failure.\n", "ReadObj")),
      place("Byte " + std::to_string(position) + " of the file: " + what + ".")
{
    description += place;
}

void BoundedReader::Refuse(const std::string& what) const
{
    throw RecordError(Position(), what);
}

std::string_view BoundedReader::Bytes(std::size_t count, const char* what)
{
    if (count > Left())
        Refuse("the file ends within \"" + std::string(what) + "\"");
    const std::string_view taken = m_bytes.substr(m_at, count);
    m_at += count;
    return taken;
}

void BoundedReader::Seek(std::int64_t position, const char* what)
{
    if (position < 0 || static_cast<std::uint64_t>(position) < m_first ||
        static_cast<std::uint64_t>(position) - m_first > m_bytes.size())
        Refuse("\"" + std::string(what) + "\" points outside the file");
    m_at = static_cast<std::size_t>(position) - m_first;
}

std::uint8_t BoundedReader::U8(const char* what)
{
    return FromLittleEndian<std::uint8_t>(Bytes(1, what));
}

std::int16_t BoundedReader::I16(const char* what)
{
    return static_cast<std::int16_t>(FromLittleEndian<std::uint16_t>(Bytes(2, what)));
}

std::int32_t BoundedReader::I32(const char* what)
{
    return static_cast<std::int32_t>(FromLittleEndian<std::uint32_t>(Bytes(4, what)));
}

float BoundedReader::F32(const char* what)
{
    return std::bit_cast<float>(FromLittleEndian<std::uint32_t>(Bytes(4, what)));
}

double BoundedReader::F64(const char* what)
{
    return std::bit_cast<double>(FromLittleEndian<std::uint64_t>(Bytes(8, what)));
}

std::string BoundedReader::Text(std::size_t width, const char* what)
{
    return Trim(FromWindows1252(Bytes(width, what)));
}

std::int32_t BoundedReader::Count(std::size_t leastBytes, const char* what)
{
    const std::int32_t count = I32(what);
    if (count < 0 || static_cast<std::size_t>(count) > Left() / leastBytes)
        Refuse("\"" + std::string(what) + "\" asks for " + std::to_string(count) + " items");
    return count;
}

void ByteWriter::I16(std::int16_t value)
{
    Append(m_bytes, static_cast<std::uint16_t>(value));
}

void ByteWriter::I32(std::int32_t value)
{
    Append(m_bytes, static_cast<std::uint32_t>(value));
}

void ByteWriter::F32(float value)
{
    Append(m_bytes, std::bit_cast<std::uint32_t>(value));
}

void ByteWriter::F64(double value)
{
    Append(m_bytes, std::bit_cast<std::uint64_t>(value));
}

void ByteWriter::Text(std::string_view text, std::size_t width)
{
    std::string bytes = ToWindows1252(text);
    bytes.resize(width, ' ');
    m_bytes += bytes;
}
