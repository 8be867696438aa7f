#include "toolkit/config/CmdLineParser.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/TokenizeCommandLine.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/encoding/UTF8.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <type_traits>

namespace Toolkit {

CmdLineOption::CmdLineOption(const TString<wchar_t>& name, bool required)
    : m_name(name), m_defined(0), m_required(required ? 1 : 0)
{
    m_name.ToLower();
}

CmdLineOption::~CmdLineOption() = default;

CmdLineParser::CmdLineParser(int argc, const wchar_t** argv)
{
    StoreArguments(argc, argv);
}

CmdLineParser::CmdLineParser(int argc, wchar_t** argv)
{
    StoreArguments(argc, argv);
}

CmdLineParser::CmdLineParser(int argc, const char** argv)
{
    StoreArguments(argc, argv);
}

CmdLineParser::CmdLineParser(int argc, char** argv)
{
    StoreArguments(argc, argv);
}

CmdLineParser::CmdLineParser(const TString<wchar_t>& commandLine)
{
    Tokenize(commandLine, m_tokens);
}

CmdLineParser::CmdLineParser(const TString<char>& commandLine)
{
    Tokenize(UTF8::ToUNICODE(commandLine), m_tokens);
}

template <typename Char>
void CmdLineParser::StoreArguments(int argc, const Char* const* argv)
{
    const bool areStored = Base::RunsWithoutThrowing([&] {
        for (int i = 0; argv && i < argc && argv[i]; ++i) {
            if constexpr (std::is_same_v<Char, char>)
                m_tokens.push_back(Base::DecodeUtf8(argv[i]));
            else
                m_tokens.emplace_back(argv[i]);
        }
    });
    // All tokens or none.
    if (!areStored)
        m_tokens.clear();
}

bool CmdLineParser::AddOption(smart_ptr<CmdLineOption> option)
{
    return option.IsValid() &&
           Base::TryOr(false, [&] { return m_options.emplace(option->GetName(), option).second; });
}

void CmdLineParser::Tokenize(const TString<wchar_t>& line, std::vector<TString<wchar_t>>& tokens)
{
    // A new vector: `line` may be one of the old tokens.
    std::vector<TString<wchar_t>> copies;
    const bool areCopied = Base::RunsWithoutThrowing([&] {
        const auto found =
            Base::TokenizeCommandLine(line, c_strSeparators, c_strDelimiters.front());
        copies.reserve(found.size());
        for (const std::wstring_view token : found)
            copies.emplace_back(std::wstring(token));
    });
    // All tokens or none.
    if (!areCopied)
        copies.clear();
    tokens.swap(copies);
}

bool CmdLineParser::Parse()
{
    if (!Base::RunsWithoutThrowing([this] { StoreValues(); }))
        return false;
    return std::all_of(m_options.begin(), m_options.end(), [](const auto& entry) {
        return entry.second->IsDefined() || !entry.second->IsRequired();
    });
}

void CmdLineParser::StoreValues()
{
    CmdLineOption* current = nullptr;
    for (const TString<wchar_t>& token : m_tokens) {
        if (token.find(c_strIdentifiers) == 0) {
            current = FindOption(token.substr(c_strIdentifiers.size()));
            if (current)
                current->SetDefined();
        } else if (current) {
            current->SetValue(token);
            current = nullptr;
        }
    }
}

CmdLineOption* CmdLineParser::FindOption(const TString<wchar_t>& name) const
{
    const auto found = m_options.find(name);
    return found == m_options.end() ? nullptr : found->second.Get();
}

} // namespace Toolkit
