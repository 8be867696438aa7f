// Creates the values that the test prints in a debugger, then calls Stop().

#include "toolkit/config/IniFile.h"
#include "toolkit/core/Bytes.h"
#include "toolkit/core/smart_ptr.h"
#include "toolkit/datetime/DateTime.h"
#include "toolkit/regExp/RegExp.h"
#include "toolkit/system/Version.h"

#include <string>
#include <vector>

using namespace Toolkit;

extern "C" void Stop();
void Stop() {}

int main(int, char** arguments)
{
    const TString<wchar_t> wide = L"caf\u00E9";
    const TString<char> narrow = "narrow";
    const TString<char> emptyString;
    const smart_ptr<Version> shared = new Version(1, 2, 3, 4);
    const smart_ptr<Version> copy = shared;
    const smart_ptr<Version> emptyPointer;
    const Version version(10, 20, 30, 40);
    const unsigned char source[] = {0x01, 0xFF, 't', 'e', 'x', 't'};
    const Bytes bytes(source, sizeof source);
    const std::vector<unsigned char> many(1000, 0xAB);
    const Bytes manyBytes(many.data(), 1000);
    const Bytes noBytes;
    DateTime date;
    date.ParseIsoString(TString<char>("2009-03-07 07:04:09 Z"));
    DateTime noDate;
    noDate.ParseIsoString(TString<char>("no date"));
    RegExp pattern("(?<word>b+)", RegExpOptions::None);
    const smart_ptr<MatchResult> match = pattern.Match("abbc");
    const smart_ptr<MatchResult> noMatch = pattern.Match("xyz");
    const smart_ptr<Group> group = match->groups.back();
    RegExp twentyGroups("()()()()()()()()()()()()()()()()()()()()", RegExpOptions::None);
    const smart_ptr<MatchResult> tooManyGroups = twentyGroups.Match("x");
    const std::string path = arguments[1] ? arguments[1] : "";
    const IniFile settings(std::wstring(path.begin(), path.end()));
    const IniFile noSettings(L"");
    Stop();
    return group->index - 1; // 0, because "word" is group 1
}
