// Any mask selects the same names as a plain matcher of "*", "?" and "\".

#include "toolkit/encoding/UTF8.h"
#include "toolkit/files/Directory.h"

#include "support/Require.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

using namespace Toolkit;
using Names = std::vector<TString<wchar_t>>;

constexpr const wchar_t* c_directories[] = {L"a", L"dir", L"dir.d", L"aab", L"\u00E9t\u00E9"};
constexpr const wchar_t* c_files[] = {
    L"b",        L"ab",     L"abc",     L"aaab",       L"abab.txt",  L"a.txt", L"A.TXT", L"a.b.c",
    L"*",        L"?",      L"\\",      L"a*b",        L"a?b",       L"a\\b",  L"[a-z]", L"[",
    L"trailing", L"a b",    L" ",       L"-",          L"~",         L"a~",    L"#a#",   L"name.",
    L"x.tar.gz", L"\u00E9", L"\u6F22a", L"\U0001F600", L"aaaaaaaaab"};

// No mask selects these.
constexpr const wchar_t* c_hidden[] = {L".hidden", L"..a", L".\u00E9"};

// A directory with the entries above, removed at the end of the program.
class PreparedDirectory {
public:
    PreparedDirectory()
    {
        std::string name = (std::filesystem::temp_directory_path() / "fuzz-XXXXXX").native();
        Require(::mkdtemp(name.data()) != nullptr);
        m_path = name;
        for (const wchar_t* const directory : c_directories)
            std::filesystem::create_directory(MakePath(directory));
        for (const wchar_t* const file : c_files)
            std::ofstream(MakePath(file)).put('x');
        for (const wchar_t* const file : c_hidden)
            std::ofstream(MakePath(file)).put('x');
    }
    ~PreparedDirectory() { std::filesystem::remove_all(m_path); }

    PreparedDirectory(const PreparedDirectory&) = delete;
    PreparedDirectory& operator=(const PreparedDirectory&) = delete;

    TString<wchar_t> Path() const { return UTF8::ToUNICODE(m_path.native()); }

private:
    std::filesystem::path MakePath(const wchar_t* name) const
    {
        return m_path / std::string(UTF8::ToUTF8(std::wstring(name)));
    }

    std::filesystem::path m_path;
};

// Matches one character of a name, or any number of characters.
struct Token {
    enum class Kind { AnySequence, AnyCharacter, Literal } kind;
    wchar_t character;

    bool Fits(wchar_t other) const { return kind == Kind::AnyCharacter || character == other; }
};

// Splits `mask` into tokens; false if it ends in a backslash that escapes nothing.
bool Parse(const std::wstring& mask, std::vector<Token>& tokens)
{
    for (std::size_t i = 0; i < mask.size(); ++i) {
        if (mask[i] == L'*') {
            tokens.push_back({Token::Kind::AnySequence, 0});
        } else if (mask[i] == L'?') {
            tokens.push_back({Token::Kind::AnyCharacter, 0});
        } else {
            if (mask[i] == L'\\' && ++i == mask.size())
                return false;
            tokens.push_back({Token::Kind::Literal, mask[i]});
        }
    }
    return true;
}

bool Matches(const std::vector<Token>& tokens, const std::wstring& name)
{
    // matches[i]: whether the tokens from here to the last match the name from character i on.
    std::vector<bool> matches(name.size() + 1, false);
    matches.back() = true;
    for (auto token = tokens.rbegin(); token != tokens.rend(); ++token) {
        if (token->kind == Token::Kind::AnySequence) {
            for (std::size_t i = name.size(); i-- > 0;)
                matches[i] = matches[i] || matches[i + 1];
            continue;
        }
        for (std::size_t i = 0; i < name.size(); ++i)
            matches[i] = matches[i + 1] && token->Fits(name[i]);
        matches.back() = false;
    }
    return matches.front();
}

// Adds the names in `all` that `mask` selects. An empty mask selects every name.
template <std::size_t size>
void AddMatches(const TString<wchar_t>& mask, const wchar_t* const (&all)[size], Names& names)
{
    std::vector<Token> tokens;
    // The mask ends at its first null character.
    const bool isValid = Parse(mask.c_str(), tokens);
    for (const wchar_t* const name : all) {
        if (mask.empty() || (isValid && Matches(tokens, name)))
            names.emplace_back(name);
    }
}

void RequireSame(Names names, Names expected, unsigned int count)
{
    std::sort(names.begin(), names.end());
    std::sort(expected.begin(), expected.end());
    Require(names == expected && count == names.size());
}

// Decodes UTF-8. If the bytes are not UTF-8, each becomes one character.
TString<wchar_t> DecodeMask(const std::string& bytes)
{
    const TString<wchar_t> text = UTF8::ToUNICODE(bytes);
    return text.empty() ? std::wstring(bytes.begin(), bytes.end()) : std::wstring(text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const PreparedDirectory prepared;
    const TString<wchar_t> path = prepared.Path();
    const TString<wchar_t> mask = DecodeMask({reinterpret_cast<const char*>(data), size});
    Names directories;
    Names files;
    AddMatches(mask, c_directories, directories);
    AddMatches(mask, c_files, files);

    Names names{L"before"};
    unsigned int count = Directory(path).GetDirectories(mask, names);
    RequireSame(names, directories, count);
    count = Directory(path).GetFiles(mask, names);
    RequireSame(names, files, count);
    files.insert(files.end(), directories.begin(), directories.end());
    count = Directory::EnumFilePaths(names, path, mask);
    RequireSame(names, files, count);
    return 0;
}
