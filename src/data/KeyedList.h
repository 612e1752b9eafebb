// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/Text.h"
#include "base/VeltError.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <list>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

/// Items in the order of adding, each under a key of its own. Keys compare exactly by their first `KeyWidth`
/// characters, blanks behind a shorter one; letters of different case are different. It does not look into
/// its items: who renames one removes it and adds it under the new key.
///
/// Places count from 1. A reference to an item holds until that item is removed, also when the whole list is
/// moved; a copy of the list has items of its own.
template <typename T, std::size_t KeyWidth>
class KeyedList
{
public:
    /// \throws VeltError 5 when the key is taken; the list is then as it was.
    T& Add(T item, std::string_view key)
    {
        if (Has(key))
            RaiseInvalidArgument();
        m_keys.insert(PadString(key, KeyWidth));
        return m_entries.emplace_back(PadString(key, KeyWidth), std::move(item)).second;
    }

    /// \throws VeltError 5 when there is no such key.
    void Remove(std::string_view key)
    {
        const auto found = Locate(m_entries, key);
        if (found == m_entries.end())
            RaiseInvalidArgument();
        m_keys.erase(found->first);
        m_entries.erase(found);
    }

    /// Whether a key is taken costs the same however many there are: a file may bring very many.
    bool Has(std::string_view key) const { return m_keys.contains(PadString(key, KeyWidth)); }
    T* Find(std::string_view key) { return ItemAt(m_entries, Locate(m_entries, key)); } ///< null when absent
    const T* Find(std::string_view key) const { return ItemAt(m_entries, Locate(m_entries, key)); }
    T* Find(std::int32_t place) { return ItemAt(m_entries, Locate(m_entries, place)); } ///< null when absent
    const T* Find(std::int32_t place) const { return ItemAt(m_entries, Locate(m_entries, place)); }

    T& At(std::int32_t place) { return Present(Find(place)); } ///< \throws VeltError 9 when absent
    const T& At(std::int32_t place) const { return Present(Find(place)); }

    std::int32_t Count() const { return static_cast<std::int32_t>(m_entries.size()); }

private:
    using Entries = std::list<std::pair<std::string, T>>; // a list, so that items stay where they are

    template <typename List>
    static auto Locate(List& entries, std::string_view key)
    {
        return std::find_if(
            entries.begin(), entries.end(),
            [wanted = PadString(key, KeyWidth)](const auto& entry) { return entry.first == wanted; });
    }

    template <typename List>
    static auto Locate(List& entries, std::int32_t place)
    {
        if (place < 1 || static_cast<std::size_t>(place) > entries.size())
            return entries.end();
        return std::next(entries.begin(), place - 1);
    }

    template <typename List, typename Iterator>
    static auto ItemAt(List& entries, Iterator at) -> decltype(&at->second)
    {
        return at == entries.end() ? nullptr : &at->second;
    }

    template <typename Item>
    static Item& Present(Item* item)
    {
        if (!item)
            RaiseSubscript();
        return *item;
    }

    Entries m_entries;
    std::unordered_set<std::string> m_keys; ///< those of the entries
};
