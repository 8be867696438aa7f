#include "IniText.h"

#include <toolkit/encoding/UTF8.h>
#include <toolkit/files/TextFile.h>

#include "VisibleText.h"

namespace Tool {

std::vector<TString<wchar_t>> ReadIniLines(const InputPath& path)
{
    Toolkit::TextFile file;
    if (!file.Open(path.GetWide()))
        throw MakeReadFailure(path);
    std::vector<TString<wchar_t>> lines = {file.GetFirstLine()};
    while (!file.Eof())
        lines.push_back(file.GetNextLine());
    return lines;
}

bool IsIniHeader(const TString<wchar_t>& line)
{
    return !line.empty() && line.front() == L'[' && line.back() == L']';
}

TString<wchar_t> GetIniSection(const TString<wchar_t>& header)
{
    return header.substr(1, header.size() - 2);
}

std::string ToVisibleUtf8(const TString<wchar_t>& text)
{
    return MakeVisible(Toolkit::UTF8::ToUTF8(text));
}

} // namespace Tool
