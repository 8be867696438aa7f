// Lines survive writing and reading back, and so does an added line.

#include "toolkit/files/TextFile.h"

#include "support/InputFile.h"
#include "support/Require.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

using namespace Toolkit;

std::vector<TString<wchar_t>> ReadLines(TextFile& file)
{
    std::vector<TString<wchar_t>> lines{file.GetFirstLine()};
    while (!file.Eof())
        lines.push_back(file.GetNextLine());
    return lines;
}

// A line can begin with a mark if the file has two byte-order marks. When the file is written, the
// second mark would become the byte-order mark of the file.
bool BeginsWithMark(const TString<wchar_t>& line)
{
    return !line.empty() && line.front() == L'\uFEFF';
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const InputFile input;
    input.Write(data, size);

    TextFile file;
    if (!file.Open(input.Path())) {
        Require(file.Eof() && file.GetFirstLine().empty() && !file.Write());
        return 0;
    }
    std::vector<TString<wchar_t>> lines = ReadLines(file);
    if (BeginsWithMark(lines.front()))
        return 0;
    Require(file.Write());
    Require(file.Open(input.Path()));
    Require(ReadLines(file) == lines);

    // An empty file reads as one empty line, which an added line replaces.
    const bool mayBeEmpty = lines.size() == 1 && lines.front().empty();
    file.AddLine(L"added \u20AC");
    Require(file.Write());
    Require(file.Open(input.Path()));
    if (!mayBeEmpty) {
        lines.emplace_back(L"added \u20AC");
        Require(ReadLines(file) == lines);
    }
    return 0;
}
