#include "toolkit/framework/TextFileLines.h"

#include "toolkit/base/FileReplacement.h"
#include "toolkit/base/LineSplitter.h"
#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/framework/ReadText.h"
#include "toolkit/framework/Text.h"

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace Toolkit::Framework {
namespace {

wxTextFileType ToTextFileType(std::string_view lineEnd)
{
    if (lineEnd.empty())
        return wxTextFileType_None;
    if (lineEnd.size() == 2)
        return wxTextFileType_Dos;
    return lineEnd == "\n" ? wxTextFileType_Unix : wxTextFileType_Mac;
}

} // namespace

bool TextFileLines::Load(const std::string& path)
{
    Unload();
    std::string text;
    if (!ReadText(path, text))
        return false;
    AddLines(text);
    // Absolute, so that a change of the working directory does not matter.
    std::error_code error;
    m_path = std::filesystem::absolute(path, error).native();
    if (error)
        m_path = path;
    return true;
}

void TextFileLines::Unload()
{
    Clear();
    m_path.clear();
    m_hasLostLine = false;
}

void TextFileLines::Append(const std::wstring& line)
{
    const std::size_t count = GetLineCount();
    if (Base::RunsWithoutThrowing([&] { AddLine(ToWxString(line)); }))
        return;
    m_hasLostLine = true;
    // wxTextBuffer has added the line but not its type, so its two lists no longer match.
    if (GetLineCount() != count)
        Clear();
}

void TextFileLines::AddLines(const std::string& text)
{
    std::wstring decoded;
    for (Base::LineSplitter lines(text); lines.MoveToNextLine();) {
        decoded.clear();
        Base::AppendDecodedUtf8(decoded, lines.Line().data(), lines.Line().size());
        // Assigns in place, because AddLine() would copy a temporary string.
        AddLine(wxString(), ToTextFileType(lines.LineEnd()));
        GetLine(GetLineCount() - 1).assign(decoded.data(), decoded.size());
    }
}

bool TextFileLines::Save() const
{
    std::string bytes;
    if (m_path.empty() || m_hasLostLine || !EncodeLines(bytes))
        return false;
    Base::FileReplacement replacement(m_path);
    return replacement.Write(bytes.data(), bytes.size()) && replacement.Commit();
}

bool TextFileLines::EncodeLines(std::string& bytes) const
{
    for (std::size_t i = 0; i < GetLineCount(); ++i) {
        const wxString& line = GetLine(i);
        if (!Base::AppendEncodedUtf8(bytes, line.wx_str(), line.length()))
            return false;
        // The last line of the loaded file may have no line ending; it needs one if lines follow.
        const bool isLast = i + 1 == GetLineCount();
        const wxTextFileType type = GetLineType(i);
        const wxChar* const lineEnd =
            GetEOL(type == wxTextFileType_None && !isLast ? typeDefault : type);
        bytes.append(lineEnd, lineEnd + std::char_traits<wxChar>::length(lineEnd));
    }
    return true;
}

} // namespace Toolkit::Framework
