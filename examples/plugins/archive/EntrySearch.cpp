#include "EntrySearch.h"

#include <algorithm>
#include <toolkit/encoding/StringConvert.h>
#include <toolkit/encoding/UTF7.h>
#include <vector>

#include "LineSplitter.h"

using namespace Toolkit;

namespace {

constexpr std::size_t c_blockSize = std::size_t{64} * 1024;

// Entries may contain any bytes. A line that is not UTF-8 is decoded as ISO 8859-1. Null bytes
// become spaces, because the conversions stop at the first one.
TString<char> ToUtf8(std::string bytes)
{
    std::replace(bytes.begin(), bytes.end(), '\0', ' ');
    if (!bytes.empty() && UTF8::ToUNICODE(bytes).empty())
        return UTF8::ToUTF8(UTF7::ToUNICODE(bytes));
    return bytes;
}

} // namespace

EntrySearch::EntrySearch(const TString<wchar_t>& pattern, HostPlugIn::CommandRun& run)
    : m_search(pattern), m_run(run)
{
}

bool EntrySearch::Search(const TString<wchar_t>& name, ZipInputStream& stream)
{
    bool isStored = true;
    unsigned int number = 0;
    const auto examine = [&](const std::string& line) {
        ++number;
        isStored = isStored && Examine(name, number, line);
    };

    wxZipInputStream& bytes = *static_cast<wxZipInputStream*>(stream);
    std::vector<char> block(c_blockSize);
    // Not ZipInputStream::ReadLine(), which drops a last line without a line ending.
    LineSplitter lines;
    while (isStored && bytes.Read(block.data(), block.size()).LastRead() > 0)
        lines.Add(block.data(), bytes.LastRead(), examine);
    lines.AddEnd(examine);
    if (bytes.GetLastError() == wxSTREAM_READ_ERROR)
        m_run.Warn(L"the entry \"" + name + L"\" is damaged; matching lines may be missing");
    return isStored;
}

bool EntrySearch::Examine(const TString<wchar_t>& name, unsigned int number,
                          const std::string& bytes)
{
    const TString<char> line = ToUtf8(bytes);
    if (!m_search.Matches(line))
        return true;
    return m_run.WriteLine(name + L":" + StringConvert::UStringFromUint32(number) + L": " +
                           UTF8::ToUNICODE(line));
}
