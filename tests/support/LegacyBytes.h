// SPDX-License-Identifier: GPL-3.0-or-later
// Projects of version 2.0 as bytes, in the language of ByteStrings.h: a header, two directories, and blocks
// that are put behind one another and entered in the directories.
#pragma once

#include "support/ByteStrings.h"

#include <array>
#include <initializer_list>
#include <string>

class LegacyBytes
{
public:
    static constexpr std::size_t kColumnBlock = 800;
    static constexpr std::size_t kScenarioBlock = 823;
    static constexpr std::size_t kFirstBlock = 912; ///< offset, counted from 0

    explicit LegacyBytes(const std::string& description = "Ling", std::int64_t minTimeP = 1986,
                         std::int64_t maxTimeP = 1990)
        : m_description(Counted(description, 40)), m_minTimeP(minTimeP), m_maxTimeP(maxTimeP)
    {
    }

    /// A length byte, then the text in `width` bytes.
    static std::string Counted(const std::string& text, std::size_t width)
    {
        return byte_strings::Raw({static_cast<int>(text.size())}) + text +
               byte_strings::Zeros(width - text.size());
    }
    /// "SH", 201 values (the rest is 0), title, type.
    static std::string ScenarioBlock(const std::string& title, std::initializer_list<float> vector = {},
                                     int vecType = 0)
    {
        std::string block = "SH";
        for (const float value : vector)
            block += byte_strings::F32(value);
        block += byte_strings::Zeros(4 * (201 - vector.size()));
        return block + Counted(title, 15) + byte_strings::Raw({vecType});
    }
    /// 200 values: `first`, and then what nobody should look at.
    static std::string ColumnBlock(std::initializer_list<float> first)
    {
        std::string block;
        for (const float value : first)
            block += byte_strings::F32(value);
        return block + byte_strings::Times(200 - static_cast<int>(first.size()), byte_strings::F32(77.5F));
    }

    LegacyBytes& Counts(std::int64_t loggedRuns, std::int64_t scenarios, std::int64_t points)
    {
        m_counts = {loggedRuns, scenarios, points};
        return *this;
    }
    LegacyBytes& Column(int number, std::initializer_list<float> first, int decimals = 0)
    {
        ColumnEntry(number, static_cast<std::int64_t>(kFirstBlock + m_blocks.size()), decimals);
        return Block(ColumnBlock(first));
    }
    LegacyBytes& Scenario(int entry, const std::string& block, int mark = 0)
    {
        ScenarioEntry(entry, static_cast<std::int64_t>(kFirstBlock + m_blocks.size()), mark);
        return Block(block);
    }
    LegacyBytes& Block(const std::string& bytes)
    {
        m_blocks += bytes;
        return *this;
    }
    LegacyBytes& ColumnEntry(int number, std::int64_t offset, int decimals = 0)
    {
        m_columns.at(static_cast<std::size_t>(number - 1)) = Entry(offset, decimals);
        return *this;
    }
    LegacyBytes& ScenarioEntry(int entry, std::int64_t offset, int mark = 0)
    {
        m_scenarios.at(static_cast<std::size_t>(entry - 1)) = Entry(offset, mark);
        return *this;
    }
    /// The byte at position 912, which belongs to nothing but can be the first of a scenario.
    LegacyBytes& ByteBeforeBlocks(char byte)
    {
        m_before = byte;
        return *this;
    }

    /// 62 bytes of header and 24 nobody reads, 25 entries, 450 bytes nobody reads, 50 entries, one byte.
    std::string Bytes() const
    {
        using namespace byte_strings;
        std::string file = Raw({0, 4, 0, 8, 6, 9}) + "ORVO" + Raw({2});
        for (const std::int64_t count : m_counts)
            file += I16(count);
        file += m_description + I16(m_minTimeP) + I16(m_maxTimeP) + std::string(24, '\x55');
        for (const std::string& entry : m_columns)
            file += entry;
        file += std::string(450, '\x55');
        for (const std::string& entry : m_scenarios)
            file += entry;
        return file + m_before + m_blocks;
    }

private:
    static std::string Entry(std::int64_t offset, int byte)
    {
        return byte_strings::I32(offset) + byte_strings::Raw({byte});
    }
    template <std::size_t n>
    static std::array<std::string, n> NoEntries()
    {
        std::array<std::string, n> entries;
        entries.fill(Entry(0, 0));
        return entries;
    }

    std::string m_description;
    std::int64_t m_minTimeP, m_maxTimeP;
    std::array<std::int64_t, 3> m_counts{};
    std::array<std::string, 25> m_columns = NoEntries<25>();
    std::array<std::string, 50> m_scenarios = NoEntries<50>();
    char m_before = '\x55';
    std::string m_blocks;
};
