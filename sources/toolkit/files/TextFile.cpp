#include "toolkit/files/TextFile.h"

#include "toolkit/base/Utf8.h"
#include "toolkit/framework/Text.h"
#include "toolkit/framework/TextFileLines.h"

#include <exception>

namespace Toolkit {
namespace {

// Empty for a line that does not fit into memory a second time.
TString<wchar_t> CopyLine(const wxString& line)
try {
    return Framework::ToText(line);
} catch (const std::exception&) {
    return {};
}

} // namespace

TextFile::TextFile() : m_lines(std::make_unique<Framework::TextFileLines>()) {}

TextFile::~TextFile() = default;

bool TextFile::Open(const TString<wchar_t>& name)
{
    try {
        return m_lines->Load(Base::EncodeUtf8(name));
    } catch (const std::exception&) {
        // A file that does not fit into memory is one that cannot be read.
        m_lines->Unload();
        return false;
    }
}

bool TextFile::Close()
{
    m_lines->Unload();
    return true;
}

bool TextFile::Write()
{
    try {
        return m_lines->Save();
    } catch (const std::exception&) {
        return false;
    }
}

TString<wchar_t> TextFile::GetFirstLine()
{
    return m_lines->GetLineCount() == 0 ? TString<wchar_t>() : CopyLine(m_lines->GetFirstLine());
}

TString<wchar_t> TextFile::GetNextLine()
{
    return Eof() ? TString<wchar_t>() : CopyLine(m_lines->GetNextLine());
}

bool TextFile::Eof() const
{
    return m_lines->GetCurrentLine() + 1 >= m_lines->GetLineCount();
}

void TextFile::Clear()
{
    m_lines->Clear();
}

void TextFile::AddLine(const TString<wchar_t>& line)
try {
    m_lines->AddLine(Framework::ToWxString(line));
} catch (const std::exception&) {
    // Nobody is told what becomes of a line.
}

} // namespace Toolkit
