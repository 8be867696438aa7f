// Reads each of two lines as a version: a printed version reads back the same, and the operators
// and CompareVersion() agree with each other and with the order of the parts.

#include "toolkit/encoding/UTF8.h"
#include "toolkit/system/Version.h"

#include "support/Require.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace {

using namespace Toolkit;

std::array<unsigned int, 4> GetParts(const Version& version)
{
    return {version.GetMajor(), version.GetMinor(), version.GetBuild(), version.GetRevision()};
}

void CheckPrinting(const Version& version)
{
    const TString<wchar_t> text = version.ToString();
    Require(GetParts(Version(text)) == GetParts(version));
    Require(version.CompareVersion(text) == 0);
    for (const wchar_t character : text)
        Require(character == L'.' || (character >= L'0' && character <= L'9'));
}

void CheckOrder(const Version& one, const Version& other)
{
    const bool isEqual = GetParts(one) == GetParts(other);
    const bool isLess = GetParts(one) < GetParts(other);
    Require((one == other) == isEqual);
    Require((one < other) == isLess);
    Require((one > other) == (!isEqual && !isLess));
    Require(one.CompareVersion(other) == (isEqual ? 0 : isLess ? -1 : 1));
    Require(other.CompareVersion(one) == -one.CompareVersion(other));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t lineEnd = std::min(bytes.find('\n'), bytes.size());
    const std::size_t rest = std::min(lineEnd + 1, bytes.size());

    const Version one(UTF8::ToUNICODE(bytes.substr(0, lineEnd)));
    const Version other(UTF8::ToUNICODE(bytes.substr(rest)));

    CheckPrinting(one);
    CheckPrinting(other);
    CheckOrder(one, other);
    return 0;
}
