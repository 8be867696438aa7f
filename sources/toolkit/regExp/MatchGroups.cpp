#include "toolkit/regExp/MatchGroups.Private.h"
#include "toolkit/regExp/PatternEngine.Private.h"
#include "toolkit/regExp/RegExp.Exceptions.h"

#include <memory>
#include <string>

namespace Toolkit {
namespace {

// The first two thirds of the offsets are pairs. The engine uses the rest as workspace.
constexpr int c_pairCount = MatchResult::c_ovectorSize / 3;

// The length in bytes of the group number before a name.
constexpr int c_numberSize = 2;

void AddGroup(MatchResult& result, int number)
{
    auto group =
        std::make_unique<Group>(TString<char>::Empty(), static_cast<unsigned short>(number));
    const GroupRange range = GetGroupRange(result, number);
    if (range.IsValid())
        group->value.assign(result.subject, static_cast<std::size_t>(range.begin), range.Length());
    // ReadGroups() has reserved the capacity, so only the construction of the smart_ptr can fail.
    // The smart_ptr then deletes the group.
    result.groups.emplace_back(group.release());
}

void RequireInformation(int code, const wchar_t* name)
{
    if (code < 0)
        RegExpException::Throw(std::wstring(L"pcre_fullinfo '") + name + L"' return error");
}

void AddNames(MatchResult& result)
{
    int count = 0;
    RequireInformation(Pcre::GetNameCount(result.code, count), L"PCRE_INFO_NAMECOUNT");
    if (count < 1)
        return;
    int entrySize = 0;
    RequireInformation(Pcre::GetNameEntrySize(result.code, entrySize), L"PCRE_INFO_NAMEENTRYSIZE");
    const unsigned char* entry = nullptr;
    RequireInformation(Pcre::GetNameTable(result.code, entry), L"PCRE_INFO_NAMETABLE");

    for (; count > 0; --count, entry += entrySize) {
        const int number = entry[0] * 256 + entry[1];
        result.AddNamedGroupKey(reinterpret_cast<const char*>(entry) + c_numberSize, number);
    }
}

} // namespace

GroupRange GetGroupRange(const MatchResult& result, int number)
{
    if (number < 0 || number >= c_pairCount)
        return {-1, -1};
    const int* const pair = result.ovector + std::ptrdiff_t{2} * number;
    return {pair[0], pair[1]};
}

void ReadGroups(MatchResult& result)
{
    if (result.resultCode < 1)
        return;
    result.groups.reserve(static_cast<std::size_t>(result.resultCode));
    for (int number = 0; number < result.resultCode; ++number)
        AddGroup(result, number);
    AddNames(result);
}

} // namespace Toolkit
