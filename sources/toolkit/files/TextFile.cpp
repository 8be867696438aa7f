#include "toolkit/files/TextFile.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/framework/Text.h"
#include "toolkit/framework/TextFileLines.h"

#include <memory>

namespace Toolkit {
namespace {

std::unique_ptr<Framework::TextFileLines> MakeLines()
{
    return Base::TryOr(nullptr, [] { return std::make_unique<Framework::TextFileLines>(); });
}

} // namespace

TextFile::TextFile() : m_lines(MakeLines()) {}

TextFile::~TextFile() = default;

bool TextFile::Open(const TString<wchar_t>& name)
{
    if (!m_lines)
        m_lines = MakeLines();
    if (!m_lines)
        return false;
    const bool isLoaded = Base::TryOr(false, [&] { return m_lines->Load(Base::EncodeUtf8(name)); });
    if (!isLoaded)
        m_lines->Unload();
    return isLoaded;
}

bool TextFile::Close()
{
    if (m_lines)
        m_lines->Unload();
    return true;
}

bool TextFile::Write()
{
    return m_lines && Base::TryOr(false, [this] { return m_lines->Save(); });
}

TString<wchar_t> TextFile::GetFirstLine()
{
    if (!m_lines || m_lines->GetLineCount() == 0)
        return {};
    // The cursor moves only after the line has been copied, because copying may throw.
    TString<wchar_t> line = Framework::ToText(m_lines->GetLine(0));
    m_lines->GetFirstLine();
    return line;
}

TString<wchar_t> TextFile::GetNextLine()
{
    if (Eof())
        return {};
    TString<wchar_t> line = Framework::ToText(m_lines->GetLine(m_lines->GetCurrentLine() + 1));
    m_lines->GetNextLine();
    return line;
}

bool TextFile::Eof() const
{
    return !m_lines || m_lines->GetCurrentLine() + 1 >= m_lines->GetLineCount();
}

void TextFile::Clear()
{
    if (m_lines)
        m_lines->Clear();
}

void TextFile::AddLine(const TString<wchar_t>& line)
{
    if (m_lines)
        m_lines->Append(line);
}

} // namespace Toolkit
