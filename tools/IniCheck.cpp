#include "IniCheck.h"

#include <algorithm>
#include <fcntl.h>
#include <map>
#include <optional>
#include <string_view>

#include "Characters.h"
#include "Failure.h"
#include "IniText.h"

using namespace std::string_view_literals;

namespace Tool {
namespace {

using Text = TString<wchar_t>;

// Checks the lines of a file one by one, by the rules of IniFile.
class Checker {
public:
    std::vector<IniFinding> Check(const std::vector<Text>& lines)
    {
        for (m_lineNumber = 1; m_lineNumber <= lines.size(); ++m_lineNumber)
            CheckLine(lines[m_lineNumber - 1]);
        return std::move(m_findings);
    }

private:
    void CheckLine(const Text& line)
    {
        Text trimmed = line;
        trimmed.Trim();
        if (trimmed.empty() || line.front() == L';')
            return;
        if (IsIniHeader(line))
            CheckHeader(GetIniSection(line));
        else if (line.find(L'=') == Text::npos)
            AddFinding("ignored: no \"=\" in the line: " + ToVisibleUtf8(trimmed));
        else
            CheckKey(line, trimmed);
    }

    void CheckHeader(const Text& section)
    {
        const auto [entry, isNew] = m_headers.emplace(section, m_lineNumber);
        m_section = &m_keys[section];
        if (!isNew)
            AddFinding("warning: [" + ToVisibleUtf8(section) +
                       "] continues the section from line " + std::to_string(entry->second));
    }

    void CheckKey(const Text& line, const Text& trimmed)
    {
        Text key = line.substr(0, line.find(L'='));
        key.Trim();
        if (!m_section) {
            AddFinding("ignored: \"" + ToVisibleUtf8(key) + "\" is above the first section");
            return;
        }
        const auto [entry, isNew] = m_section->emplace(key, m_lineNumber);
        if (!isNew)
            AddFinding("ignored: \"" + ToVisibleUtf8(key) + "\" already has a value from line " +
                       std::to_string(entry->second));
        else if (trimmed.front() == L';')
            AddFinding("warning: a key, not a comment: \";\" is not in the first column");
    }

    void AddFinding(const std::string& text) { m_findings.push_back({m_lineNumber, text}); }

    using LineNumbers = std::map<Text, std::size_t>;

    std::vector<IniFinding> m_findings;
    std::size_t m_lineNumber = 0;
    LineNumbers m_headers;              // the first header of each section
    std::map<Text, LineNumbers> m_keys; // by section, the first line of each key
    LineNumbers* m_section = nullptr;   // of the current section; null above the first header
};

std::string ReadBytes(const InputPath& path)
{
    constexpr std::size_t blockSize = 65536;

    const Descriptor file(::open(path.GetPath().c_str(), O_RDONLY | O_CLOEXEC));
    std::string bytes;
    for (ssize_t count = 1; count > 0;) {
        const std::size_t length = bytes.size();
        bytes.resize(length + blockSize);
        count = ::read(file.Get(), bytes.data() + length, blockSize);
        bytes.resize(length + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count < 0)
            throw MakeSystemFailure("cannot read " + path.GetArgument());
    }
    return bytes;
}

// The mark of UTF-32 in little-endian order begins with that of UTF-16, so it needs no entry.
bool HasUtf16Or32Mark(std::string_view bytes)
{
    for (const std::string_view mark : {"\xFE\xFF"sv, "\xFF\xFE"sv, "\0\0\xFE\xFF"sv}) {
        if (bytes.starts_with(mark))
            return true;
    }
    return false;
}

// Returns the number of the line with the first character for which `matches` is true. Lines end as
// in TextFile.
template <typename Predicate>
std::optional<std::size_t> FindLine(std::string_view bytes, Predicate matches)
{
    std::size_t line = 1;
    for (bool wasReturn = false; !bytes.empty();) {
        const Character character = ReadCharacter(bytes);
        if (matches(character))
            return line;
        const bool isReturn = character.code == '\r';
        if (isReturn || (character.code == '\n' && !wasReturn))
            ++line;
        wasReturn = isReturn;
    }
    return {};
}

// Reports the first byte that is not UTF-8 and the first null character, unless the file has a
// byte-order mark of UTF-16 or UTF-32.
std::vector<IniFinding> CheckEncoding(std::string_view bytes)
{
    std::vector<IniFinding> findings;
    if (HasUtf16Or32Mark(bytes))
        return findings;
    const auto isInvalid = [](const Character& character) { return !character.isValid; };
    if (const std::optional<std::size_t> line = FindLine(bytes, isInvalid))
        findings.push_back({*line, "warning: not UTF-8, so the file is read as ISO 8859-1"});
    const auto isNull = [](const Character& character) { return character.bytes == "\0"sv; };
    if (const std::optional<std::size_t> line = FindLine(bytes, isNull))
        findings.push_back({*line, "warning: a null character: UTF-16 without a byte-order mark?"});
    return findings;
}

} // namespace

std::vector<IniFinding> CheckIni(const InputPath& path)
{
    std::vector<IniFinding> findings = Checker().Check(ReadIniLines(path));
    const std::vector<IniFinding> encodingFindings = CheckEncoding(ReadBytes(path));
    findings.insert(findings.end(), encodingFindings.begin(), encodingFindings.end());
    std::stable_sort(
        findings.begin(), findings.end(),
        [](const IniFinding& one, const IniFinding& other) { return one.line < other.line; });
    return findings;
}

} // namespace Tool
