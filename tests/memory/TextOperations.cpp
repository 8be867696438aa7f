#include "toolkit/config/CmdLineParser.h"
#include "toolkit/core/TString.h"
#include "toolkit/encoding/Base64.h"
#include "toolkit/encoding/QuotedPrintable.h"
#include "toolkit/encoding/StringConvert.h"
#include "toolkit/encoding/UTF7.h"
#include "toolkit/encoding/UTF8.h"

#include <memory>
#include <string>
#include <vector>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

const TString<wchar_t> c_wide = L"a text that is too long for the string itself";
const TString<char> c_narrow = "a text that is too long for the string itself";

// Checks that `convert` returns `expected`, or an empty string when out of memory.
template <typename Result, typename Convert>
void Converts(Attempt& attempt, Convert convert, const Result& expected)
{
    Result result;
    attempt.Run([&] { result = convert(); });
    attempt.Expect(result == expected, result.empty());
    attempt.ExpectAlways(Result(convert()) == expected);
}

void EncodesUtf8(Attempt& attempt)
{
    Converts<TString<char>>(
        attempt, [] { return UTF8::ToUTF8(c_wide); }, c_narrow);
}

void DecodesUtf8(Attempt& attempt)
{
    Converts<TString<wchar_t>>(
        attempt, [] { return UTF8::ToUNICODE(c_narrow); }, c_wide);
}

void EncodesUtf7(Attempt& attempt)
{
    Converts<TString<char>>(
        attempt, [] { return UTF7::ToUTF7(c_wide); }, c_narrow);
}

void DecodesUtf7(Attempt& attempt)
{
    Converts<TString<wchar_t>>(
        attempt, [] { return UTF7::ToUNICODE(c_narrow); }, c_wide);
}

void ChecksHasToBeUtf8(Attempt& attempt)
{
    bool hasToBe = true;
    attempt.Run([&] { hasToBe = UTF8::HasToBeUTF8(c_wide); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && !hasToBe);
}

const TString<wchar_t> c_quotable = L"a text, with = in it, and more than a few words";
const TString<wchar_t> c_quoted = L"a=20text=2C=20with=20=3D=20in=20it=2C=20and=20more=20than=20a"
                                  L"=20few=20words";

void EncodesQp(Attempt& attempt)
{
    Converts<TString<wchar_t>>(
        attempt, [] { return QP::ToQP(c_quotable); }, c_quoted);
}

void EncodesQpInLines(Attempt& attempt)
{
    const TString<wchar_t> expected = QP::ToQP(c_quotable, 20, 20);
    Converts<TString<wchar_t>>(
        attempt, [] { return QP::ToQP(c_quotable, 20, 20); }, expected);
}

void DecodesQp(Attempt& attempt)
{
    Converts<TString<wchar_t>>(
        attempt, [] { return QP::ToUNICODE(c_quoted); }, c_quotable);
}

void ChecksHasToBeQp(Attempt& attempt)
{
    static const TString<wchar_t> text = L"a text with a line feed\n and more than a few words";
    bool hasToBe = false;
    attempt.Run([&] { hasToBe = QP::HasToBeQP(text, 1, 76, true); });
    attempt.Expect(hasToBe, !hasToBe);
}

void ChecksHasToBeQpNarrow(Attempt& attempt)
{
    bool hasToBe = false;
    attempt.Run([&] { hasToBe = QP::HasToBeQP(c_narrow, 1, 76, false); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && hasToBe);
}

const unsigned char* const c_data = reinterpret_cast<const unsigned char*>("AB");
const unsigned char* const c_code = reinterpret_cast<const unsigned char*>("QUI=");

void ConvertsBase64Array(Attempt& attempt,
                         bool (*convert)(const unsigned char*, unsigned int, unsigned char**,
                                         unsigned int*),
                         const unsigned char* in, unsigned int length, const std::string& expected)
{
    unsigned char* out = nullptr;
    unsigned int outLength = 99;
    bool isDone = false;
    attempt.Run([&] { isDone = convert(in, length, &out, &outLength); });
    const std::unique_ptr<unsigned char[]> owner(out);
    attempt.Expect(isDone && std::string(out, out + outLength) == expected,
                   !isDone && !out && outLength == 99);
}

// b64_decode_binary() encodes and b64_encode_binary() decodes, despite their names.
void EncodesBase64(Attempt& attempt)
{
    ConvertsBase64Array(attempt, b64_decode_binary, c_data, 2, "QUI=");
}

void DecodesBase64(Attempt& attempt)
{
    ConvertsBase64Array(attempt, b64_encode_binary, c_code, 4, "AB");
}

void ComputesBase64Lengths(Attempt& attempt)
{
    int sum = 0;
    attempt.Run([&] { sum = GetCodeLength(4) + GetDataLength(4); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && sum == 11);
}

void EncodesB64(Attempt& attempt)
{
    const smart_ptr<Bytes> bytes(
        new Bytes(reinterpret_cast<const unsigned char*>("twelve bytes"), 12));
    Converts<TString<wchar_t>>(
        attempt, [&] { return B64::ToUNICODE(bytes); }, L"dHdlbHZlIGJ5dGVz");
}

void DecodesB64(Attempt& attempt, const TString<wchar_t>& text, unsigned int expectedSize)
{
    smart_ptr<Bytes> bytes = smart_ptr<Bytes>::Empty();
    attempt.Run([&] { bytes = B64::ToB64(text); });
    unsigned char* out = nullptr;
    unsigned int size = 0;
    const bool hasBytes = bytes.IsValid() && bytes->GetBytes(&out, &size);
    delete[] out;
    attempt.Expect(hasBytes && size == expectedSize, !hasBytes);
}

void DecodesShortB64(Attempt& attempt)
{
    DecodesB64(attempt, L"dHdlbHZlIGJ5dGVz", 12);
}

void DecodesLongB64(Attempt& attempt)
{
    static const TString<wchar_t> text(std::wstring(4000, L'Q'));
    DecodesB64(attempt, text, 3000);
}

template <typename Text, typename Number>
void Parses(Attempt& attempt, bool (*parse)(const Text&, Number&), const Text& text,
            Number expected)
{
    Number value = 1;
    attempt.Run([&] { parse(text, value); });
    attempt.Expect(value == expected, value == Number{1});
}

const TString<char> c_number = "12";
const TString<wchar_t> c_wideNumber = L"12";
const TString<char> c_longNumber = TString<char>("12." + std::string(60, '0'));
const TString<wchar_t> c_longWideNumber = TString<wchar_t>(L"12." + std::wstring(60, L'0'));

#define PARSES(function, Text, text, Number)                                                       \
    {                                                                                              \
        "Toolkit::StringConvert::" #function, [](Attempt& attempt) {                               \
            Parses<TString<Text>, Number>(attempt, StringConvert::function, text,                  \
                                          static_cast<Number>(12));                                \
        }                                                                                          \
    }

#define FORMATS(function, Text, value, expected)                                                   \
    {                                                                                              \
        "Toolkit::StringConvert::" #function, [](Attempt& attempt) {                               \
            Converts<TString<Text>>(                                                               \
                attempt, [] { return StringConvert::function(value); }, expected);                 \
        }                                                                                          \
    }

void GetsCharactersFromRight(Attempt& attempt)
{
    Converts<TString<wchar_t>>(
        attempt, [] { return StringConvert::GetCharactersFromRight(c_wide, 20); },
        L"ngforthestringitself");
}

void Compares(Attempt& attempt)
{
    bool isSame = false;
    attempt.Run([&] {
        isSame = c_wide.compareNoCase(c_wide) == 0 && c_narrow.compareNoCase(c_narrow) == 0 &&
                 c_wide.HasSubstring(c_wide) && c_narrow.HasSubstring(c_narrow) &&
                 TString<char>::Empty().empty() && TString<wchar_t>::Empty().empty() &&
                 c_wideNumber.ToUint32() == 12 && c_wideNumber.ToInt32() == 12;
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && isSame);
}

void TrimsAndLowersCase(Attempt& attempt)
{
    TString<wchar_t> text = L"   A text that is too long for the string itself   ";
    attempt.Run([&] { text.Trim().ToLower(); });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && text == c_wide);
}

void Replaces(Attempt& attempt, const wchar_t* from, const wchar_t* to, const wchar_t* expected)
{
    TString<wchar_t> text = L"a text that is too long for the string itself";
    const TString<wchar_t> wideFrom = from;
    const TString<wchar_t> wideTo = to;
    attempt.Run(Rule::BadAlloc, [&] { text.Replace(wideFrom, wideTo); });
    attempt.Expect(text == expected, text == c_wide);
}

void ReplacesOneOccurrence(Attempt& attempt)
{
    Replaces(attempt, L"too long", L"as long as a longer line would be",
             L"a text that is as long as a longer line would be for the string itself");
}

void ReplacesOccurrencesThatReplacementsCreate(Attempt& attempt)
{
    TString<wchar_t> text(std::wstring(50, L'a') + L"b");
    const TString<wchar_t> before = text;
    const TString<wchar_t> from = L"ab";
    const TString<wchar_t> to = L"bcc";
    attempt.Run(Rule::BadAlloc, [&] { text.Replace(from, to); });
    attempt.Expect(text == TString<wchar_t>(L"b" + std::wstring(100, L'c')), text == before);
}

void SplitsIntoTokens(Attempt& attempt)
{
    std::vector<TString<wchar_t>> tokens{L"an old token that is longer than the string itself"};
    const TString<wchar_t> delimiters = L"o";
    const bool isDone =
        attempt.Run(Rule::BadAlloc, [&] { c_wide.GetTokens(delimiters, tokens, false); });
    attempt.Expect(isDone && tokens.size() == 5 && tokens.back() == L"r the string itself",
                   !isDone && tokens.empty());
    c_wide.GetTokens(delimiters, tokens, false);
    attempt.ExpectAlways(tokens.size() == 5);
}

const wchar_t* c_wideArguments[] = {L"the path of a program with a name", L"-file",
                                    L"a file with quite a long name", nullptr};
const char* c_arguments[] = {"the path of a program with a name", "-file",
                             "a file with quite a long name", nullptr};
const TString<wchar_t> c_line = L"-file \"a file with quite a long name\"";
const TString<char> c_narrowLine = "-file \"a file with quite a long name\"";

// Constructs a parser and reads its tokens back through an option. When out of memory, the parser
// has no tokens. `make` constructs it in the memory passed, so that only the constructor allocates.
template <typename Make>
void ConstructsParser(Attempt& attempt, Make make)
{
    const smart_ptr<CmdLineOption> option(new CmdLineOption(L"file", true));
    alignas(CmdLineParser) static unsigned char memory[sizeof(CmdLineParser)];
    CmdLineParser* parser = nullptr;
    attempt.Run([&] { parser = make(memory); });
    parser->AddOption(option);
    const bool isParsed = parser->Parse();
    attempt.Expect(isParsed && option->GetValue() == L"a file with quite a long name", !isParsed);
    parser->~CmdLineParser();
}

template <int Form>
void ConstructsParserFrom(Attempt& attempt)
{
    ConstructsParser(attempt, [](void* memory) {
        if constexpr (Form == 0)
            return new (memory) CmdLineParser(3, c_wideArguments);
        else if constexpr (Form == 1)
            return new (memory) CmdLineParser(3, const_cast<wchar_t**>(c_wideArguments));
        else if constexpr (Form == 2)
            return new (memory) CmdLineParser(3, c_arguments);
        else if constexpr (Form == 3)
            return new (memory) CmdLineParser(3, const_cast<char**>(c_arguments));
        else if constexpr (Form == 4)
            return new (memory) CmdLineParser(c_line);
        else
            return new (memory) CmdLineParser(c_narrowLine);
    });
}

void Tokenizes(Attempt& attempt)
{
    std::vector<TString<wchar_t>> tokens{L"old"};
    attempt.Run([&] { CmdLineParser::Tokenize(c_line, tokens); });
    attempt.Expect(tokens.size() == 2, tokens.empty());
}

void AddsOption(Attempt& attempt)
{
    CmdLineParser parser(c_line);
    const smart_ptr<CmdLineOption> option(new CmdLineOption(L"file", true));
    bool isAdded = false;
    attempt.Run([&] { isAdded = parser.AddOption(option); });
    attempt.Expect(isAdded, !isAdded);
    attempt.ExpectAlways(isAdded || parser.AddOption(option));
    attempt.ExpectAlways(parser.Parse());
}

void ParsesOptions(Attempt& attempt)
{
    CmdLineParser parser(c_line);
    const smart_ptr<CmdLineOption> option(new CmdLineOption(L"file", true));
    parser.AddOption(option);
    bool isParsed = false;
    attempt.Run([&] { isParsed = parser.Parse(); });
    attempt.Expect(isParsed && option->IsDefined() && !option->GetValue().empty(), !isParsed);
    attempt.ExpectAlways(parser.Parse() && option->GetValue() == L"a file with quite a long name");
}

void ConstructsOption(Attempt& attempt)
{
    static const TString<wchar_t> name = L"an option with a rather long name";
    bool isCreated = false;
    if (attempt.Run(Rule::BadAlloc, [&] { isCreated = CmdLineOption(name, true).IsRequired(); }))
        attempt.Expect(isCreated);
}

} // namespace

std::vector<Operation> TextOperations()
{
    return {
        {"Toolkit::UTF8::ToUTF8", EncodesUtf8},
        {"Toolkit::UTF8::ToUNICODE", DecodesUtf8},
        {"Toolkit::UTF8::HasToBeUTF8", ChecksHasToBeUtf8},
        {"Toolkit::UTF7::ToUTF7", EncodesUtf7},
        {"Toolkit::UTF7::ToUNICODE", DecodesUtf7},
        {"Toolkit::QP::ToQP", EncodesQp},
        {"Toolkit::QP::ToQP", EncodesQpInLines},
        {"Toolkit::QP::ToUNICODE", DecodesQp},
        {"Toolkit::QP::HasToBeQP", ChecksHasToBeQp},
        {"Toolkit::QP::HasToBeQP", ChecksHasToBeQpNarrow},
        {"b64_decode_binary", EncodesBase64},
        {"b64_encode_binary", DecodesBase64},
        {"GetCodeLength", ComputesBase64Lengths},
        {"GetDataLength", ComputesBase64Lengths},
        {"Toolkit::B64::ToUNICODE", EncodesB64},
        {"Toolkit::B64::ToB64", DecodesShortB64},
        {"Toolkit::B64::ToB64", DecodesLongB64},
        PARSES(ToInt32, char, c_number, int),
        PARSES(ToInt32, wchar_t, c_wideNumber, int),
        PARSES(ToUint32, char, c_number, unsigned int),
        PARSES(ToUint32, wchar_t, c_wideNumber, unsigned int),
        PARSES(ToInt64, char, c_number, long long),
        PARSES(ToInt64, wchar_t, c_wideNumber, long long),
        PARSES(ToUint64, char, c_number, unsigned long long),
        PARSES(ToUint64, wchar_t, c_wideNumber, unsigned long long),
        PARSES(ToDouble, char, c_longNumber, double),
        PARSES(ToDouble, wchar_t, c_longWideNumber, double),
        FORMATS(UStringFromInt32, wchar_t, -123456, L"-123456"),
        FORMATS(UStringFromUint32, wchar_t, 123456u, L"123456"),
        FORMATS(UStringFromInt64, wchar_t, -12345678901LL, L"-12345678901"),
        FORMATS(UStringFromUInt64, wchar_t, 12345678901ULL, L"12345678901"),
        FORMATS(UStringFromDouble, wchar_t, 1234567.0, L"1.23457e+06"),
        FORMATS(StringFromInt32, char, -123456, "-123456"),
        FORMATS(StringFromUint32, char, 123456u, "123456"),
        FORMATS(StringFromInt64, char, -1234567890123456789LL, "-1234567890123456789"),
        FORMATS(StringFromUInt64, char, 12345678901234567890ULL, "12345678901234567890"),
        FORMATS(StringFromDouble, char, 0.5, "0.5"),
        {"Toolkit::StringConvert::GetCharactersFromRight", GetsCharactersFromRight},
        {"TString::compareNoCase", Compares},
        {"TString::compareNoCase", Compares},
        {"TString::HasSubstring", Compares},
        {"TString::HasSubstring", Compares},
        {"TString::Empty", Compares},
        {"TString::Empty", Compares},
        {"TString::ToUint32", Compares},
        {"TString::ToInt32", Compares},
        {"TString::Trim", TrimsAndLowersCase},
        {"TString::ToLower", TrimsAndLowersCase},
        {"TString::Replace", ReplacesOneOccurrence},
        {"TString::Replace", ReplacesOccurrencesThatReplacementsCreate},
        {"TString::GetTokens", SplitsIntoTokens},
        {"Toolkit::CmdLineParser::CmdLineParser", ConstructsParserFrom<0>},
        {"Toolkit::CmdLineParser::CmdLineParser", ConstructsParserFrom<1>},
        {"Toolkit::CmdLineParser::CmdLineParser", ConstructsParserFrom<2>},
        {"Toolkit::CmdLineParser::CmdLineParser", ConstructsParserFrom<3>},
        {"Toolkit::CmdLineParser::CmdLineParser", ConstructsParserFrom<4>},
        {"Toolkit::CmdLineParser::CmdLineParser", ConstructsParserFrom<5>},
        {"Toolkit::CmdLineParser::Tokenize", Tokenizes},
        {"Toolkit::CmdLineParser::AddOption", AddsOption},
        {"Toolkit::CmdLineParser::Parse", ParsesOptions},
        {"Toolkit::CmdLineOption::CmdLineOption", ConstructsOption},
        {"Toolkit::CmdLineOption::~CmdLineOption", ConstructsOption},
    };
}

} // namespace Toolkit::TestSupport
