// SPDX-License-Identifier: GPL-3.0-or-later
// Binary records: little-endian numbers and fixed-width text, taken one by one from bytes that somebody else
// wrote, or put behind one another. Positions count from 1, as the files themselves count.
#pragma once

#include "base/VeltError.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// A record that cannot be read: "ReadObj Failure." and, on a line of its own, what is wrong at which byte.
struct RecordError : VeltError {
    RecordError(std::size_t position, const std::string& what);
    std::string place; ///< that line, "Byte 11 of the file: ..."
};

/// Reads numbers and texts in order and never beyond the end. Whatever is missing raises a RecordError.
class BoundedReader
{
public:
    /// \param first  position in the file of the first of `bytes`, for a part of one
    explicit BoundedReader(std::string_view bytes, std::size_t first = 1) : m_bytes(bytes), m_first(first) {}

    std::size_t Position() const { return m_first + m_at; } ///< of the next byte in the file
    std::size_t Left() const { return m_bytes.size() - m_at; }
    /// Goes to a position in the file; the one behind the last byte is allowed.
    void Seek(std::int64_t position, const char* what);

    std::uint8_t U8(const char* what);
    std::int16_t I16(const char* what);
    std::int32_t I32(const char* what);
    float F32(const char* what);
    double F64(const char* what);
    bool Boolean(const char* what) { return I16(what) != 0; } ///< any nonzero value is true
    std::string_view Bytes(std::size_t count, const char* what);
    /// A text of the code page in `width` bytes, trimmed at both ends, as UTF-8. It is not cut at a zero
    /// byte.
    std::string Text(std::size_t width, const char* what);
    /// A count of items that take `leastBytes` each or more: neither below 0 nor more than can follow.
    std::int32_t Count(std::size_t leastBytes, const char* what);

    [[noreturn]] void Refuse(const std::string& what) const;

private:
    std::string_view m_bytes;
    std::size_t m_first;
    std::size_t m_at = 0;
};

/// Puts numbers and texts behind one another.
class ByteWriter
{
public:
    std::size_t Position() const { return m_bytes.size() + 1; } ///< of the next byte, from 1
    void I16(std::int16_t value);
    void I32(std::int32_t value);
    void F32(float value);
    void F64(double value);
    void Boolean(bool value) { I16(value ? -1 : 0); }
    void Bytes(std::string_view bytes) { m_bytes += bytes; }
    /// `text` (UTF-8) in `width` bytes of the code page, filled with blanks or cut.
    void Text(std::string_view text, std::size_t width);
    const std::string& Written() const { return m_bytes; }
    std::string Take() { return std::move(m_bytes); }

private:
    std::string m_bytes;
};
