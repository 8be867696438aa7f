#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"

#include <map>
#include <vector>

namespace Toolkit {

/// An option of an application, such as "-file", and its value on the command line.
///
/// When out of memory, constructors and SetValue() throw std::bad_alloc and change nothing.
class TOOLKIT_API CmdLineOption {
public:
    /// Pass `name` without the dash; it is converted to lower case. Parsing fails if a `required`
    /// option is missing.
    CmdLineOption(const TString<wchar_t>& name, bool required);
    virtual ~CmdLineOption();

    const TString<wchar_t>& GetName() const { return m_name; }
    /// Empty if no value followed the option.
    const TString<wchar_t>& GetValue() const { return m_value; }
    bool IsRequired() const { return m_required != 0; }
    /// Whether the option was on the command line.
    bool IsDefined() const { return m_defined != 0; }

    void SetDefined() { m_defined = 1; }
    /// Sets only the value; the option does not become defined.
    void SetValue(const TString<wchar_t>& value) { m_value = value; }

private:
    TString<wchar_t> m_name;
    TString<wchar_t> m_value;
    int m_defined;  // 0 or 1
    int m_required; // 0 or 1
};

/// Splits a command line into tokens and finds an application's options in them.
///
/// An option is a dash and a name; the next token is its value unless it also begins with a dash.
/// So "-5" is an option named "5". Users must type names in lower case: names are registered in
/// lower case and compared exactly. Unknown options and other words are ignored.
///
/// One object is used by one thread at a time. When out of memory, constructors and Tokenize()
/// store no tokens, AddOption() and Parse() return false, and only copying throws `std::bad_alloc`.
class TOOLKIT_API CmdLineParser {
public:
    /// The characters that separate tokens: space and tab.
    static const TString<wchar_t> c_strSeparators;
    /// The prefix of an option: "-".
    static const TString<wchar_t> c_strIdentifiers;
    /// The character that quotes a token with separators in it: the double quote.
    static const TString<wchar_t> c_strDelimiters;

    /// Stores each element of `argv` unchanged as one token, the program name included. A null
    /// element ends `argv` early.
    CmdLineParser(int argc, const wchar_t** argv);
    CmdLineParser(int argc, wchar_t** argv);
    /// The same, but decodes each element from UTF-8. Invalid UTF-8 becomes an empty token.
    CmdLineParser(int argc, const char** argv);
    CmdLineParser(int argc, char** argv);
    /// Splits `commandLine` as Tokenize() does.
    CmdLineParser(const TString<wchar_t>& commandLine);
    /// The same, but decodes `commandLine` from UTF-8 first. Invalid UTF-8 yields no tokens.
    CmdLineParser(const TString<char>& commandLine);

    /// Registers `option` and shares it with the caller. False if `option` is empty or its name is
    /// already registered.
    bool AddOption(smart_ptr<CmdLineOption> option);

    /// Replaces `tokens` with those of `line`.
    ///
    /// Spaces and tabs separate tokens. A token that begins with a double quote ends at the next
    /// quote and may be empty; without a second quote it is dropped together with the rest of the
    /// line. A quote inside a token is an ordinary character.
    static void Tokenize(const TString<wchar_t>& line, std::vector<TString<wchar_t>>& tokens);

    /// Marks as defined the options that the tokens name, and stores their values. False if a
    /// required option is not defined. Parsing again keeps marks and values that it does not set.
    bool Parse();

private:
    template <typename Char>
    void StoreArguments(int argc, const Char* const* argv);
    void StoreValues();
    CmdLineOption* FindOption(const TString<wchar_t>& name) const;

    std::map<TString<wchar_t>, smart_ptr<CmdLineOption>> m_options;
    std::vector<TString<wchar_t>> m_tokens;
};

} // namespace Toolkit
