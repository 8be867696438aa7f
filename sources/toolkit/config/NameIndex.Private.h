#pragma once

#include "toolkit/base/Utf8.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace Toolkit {

/// Finds names in a list by hash; the names are `list[position].name`. The names in the list and
/// those to look up may be valid UTF-8 or wide characters, in any combination. Nothing is
/// converted, so a lookup allocates no memory.
class NameIndex {
public:
    static constexpr std::size_t c_missing = ~std::size_t{0};

    /// Returns the position of a name; c_missing if it was not added.
    template <typename List, typename Name>
    std::size_t Find(const List& list, Name name) const
    {
        // A free slot contains 0, and 0 - 1 is c_missing.
        return CountSlots() == 0 ? c_missing : GetContent(FindSlot(list, name)) - 1;
    }

    /// Makes room for `count` names in all.
    template <typename List>
    void Reserve(const List& list, std::size_t count)
    {
        // At most three quarters of the slots are used.
        const std::size_t needed = count + count / 3 + 1;
        if (needed <= CountSlots())
            return;
        NameIndex larger;
        if (needed <= c_maxSmallSlots)
            larger.m_smallSlots.resize(std::bit_ceil(needed));
        else
            larger.m_largeSlots.resize(std::bit_ceil(needed));
        for (std::size_t slot = 0; slot < CountSlots(); ++slot) {
            if (GetContent(slot) != 0)
                larger.Add(list, GetContent(slot) - 1);
        }
        *this = std::move(larger);
    }

    /// Adds the name at `position`; returns false if the name was added before. Reserve() must have
    /// made room for it.
    template <typename List>
    bool Add(const List& list, std::size_t position)
    {
        const std::size_t slot = FindSlot(list, list[position].name);
        if (GetContent(slot) != 0)
            return false;
        if (m_largeSlots.empty())
            m_smallSlots[slot] = static_cast<std::uint16_t>(position + 1);
        else
            m_largeSlots[slot] = position + 1;
        return true;
    }

private:
    // Of these slots at most three quarters are used, so position + 1 fits into 16 bits.
    static constexpr std::size_t c_maxSmallSlots = 65536;

    std::size_t CountSlots() const { return m_smallSlots.size() + m_largeSlots.size(); }

    std::size_t GetContent(std::size_t slot) const
    {
        return m_largeSlots.empty() ? m_smallSlots[slot] : m_largeSlots[slot];
    }

    // Returns the slot of a name, or the free slot where it belongs.
    template <typename List, typename Name>
    std::size_t FindSlot(const List& list, Name name) const
    {
        const std::size_t mask = CountSlots() - 1;
        std::size_t slot = HashName(name) & mask;
        while (GetContent(slot) != 0 && !IsSame(list[GetContent(slot) - 1].name, name))
            slot = (slot + 1) & mask;
        return slot;
    }

    // Returns `hash` with two more characters mixed in.
    static std::uint64_t AddPair(std::uint64_t hash, wchar_t first, wchar_t second)
    {
        // 2^64 divided by the golden ratio.
        constexpr std::uint64_t factor = 0x9E3779B97F4A7C15;
        const std::uint64_t high = static_cast<std::uint32_t>(second);
        return (hash ^ static_cast<std::uint32_t>(first) ^ high << 32) * factor;
    }

    // The low bits choose the slot, but only the high ones depend on every character.
    static std::size_t Finish(std::uint64_t hash)
    {
        return static_cast<std::size_t>(hash ^ hash >> 32);
    }

    static std::size_t HashName(std::wstring_view name)
    {
        std::uint64_t hash = 0;
        const wchar_t* at = name.data();
        for (std::size_t pairs = name.size() / 2; pairs > 0; --pairs, at += 2)
            hash = AddPair(hash, at[0], at[1]);
        return Finish(name.size() % 2 != 0 ? AddPair(hash, *at, L'\0') : hash);
    }

    static std::size_t HashName(std::string_view name)
    {
        std::uint64_t hash = 0;
        const char* const end = name.data() + name.size();
        for (const char* at = name.data(); at != end;) {
            const wchar_t first = Base::DecodeNextCharacter(at, end);
            hash = AddPair(hash, first, at != end ? Base::DecodeNextCharacter(at, end) : L'\0');
        }
        return Finish(hash);
    }

    static bool IsSame(std::string_view left, std::string_view right) { return left == right; }
    static bool IsSame(std::wstring_view left, std::wstring_view right) { return left == right; }
    static bool IsSame(std::wstring_view left, std::string_view right)
    {
        return IsSame(right, left);
    }
    static bool IsSame(std::string_view left, std::wstring_view right)
    {
        const char* at = left.data();
        const char* const end = at + left.size();
        for (const wchar_t character : right) {
            if (at == end || Base::DecodeNextCharacter(at, end) != character)
                return false;
        }
        return at == end;
    }

    // A slot contains a position + 1, or 0 if it is free. Only one of the two lists is in use.
    // IniLookup/200000: with large slots even for few names, lookups take 1.4 times as long.
    std::vector<std::uint16_t> m_smallSlots;
    std::vector<std::size_t> m_largeSlots;
};

} // namespace Toolkit
