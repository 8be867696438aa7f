#include "toolkit/base/Numbers.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/regExp/PatternRun.Private.h"
#include "toolkit/regExp/RegExp.Exceptions.h"

namespace Toolkit::PatternRun {
namespace {

// Callers log and compare these messages, whose prefix is overwritten from its beginning.
std::wstring WriteOver(std::wstring text, const std::wstring& beginning)
{
    return text.replace(0, beginning.size(), beginning);
}

std::wstring Decimal(int number)
{
    return Base::NumberText<wchar_t>(static_cast<long long>(number)).String();
}

[[noreturn]] void ThrowCompileError(const TString<char>& pattern, const char* errorText,
                                    int errorOffset)
{
    const std::wstring written = L" : " + Base::DecodeUtf8(errorText) + L" (@offset: " +
                                 Decimal(errorOffset) + L") " + Base::DecodeUtf8(pattern);
    RegExpException::Throw(WriteOver(L"pcre_compile failed with error ", written));
}

void* Compile(const TString<char>& pattern, const char*& errorText, int& errorOffset)
{
    void* const code = PatternEngine::Compile(pattern.c_str(), errorText, errorOffset);
    if (!code)
        ThrowCompileError(pattern, errorText, errorOffset);
    return code;
}

void RequireNoError(int code)
{
    if (code < 0 && code != PatternEngine::c_noMatch)
        ThrowExecuteError(code);
}

} // namespace

void CodeRelease::operator()(void* code) const
{
    PatternEngine::Free(code);
}

Code Compile(const TString<char>& pattern)
{
    const char* errorText = nullptr;
    int errorOffset = 0;
    return Code(Compile(pattern, errorText, errorOffset));
}

void Compile(MatchResult& result)
{
    PatternEngine::Free(result.code);
    result.code = nullptr;
    result.code = Compile(result.pattern, result.errorText, result.errorOffset);
}

int Execute(const Code& code, const TString<char>& subject, std::size_t start, int options,
            int (&offsets)[MatchResult::c_ovectorSize])
{
    const int resultCode = PatternEngine::Execute(code.get(), subject.data(), subject.size(), start,
                                                  options, offsets, MatchResult::c_ovectorSize);
    RequireNoError(resultCode);
    return resultCode;
}

void Execute(MatchResult& result, std::size_t start)
{
    result.resultCode =
        PatternEngine::Execute(result.code, result.subject.data(), result.subject.size(), start,
                               result.execOptions, result.ovector, result.ovectorSize);
    RequireNoError(result.resultCode);
}

void ThrowExecuteError(int code)
{
    RegExpException::Throw(WriteOver(L"RegExp::Match return error: ", Decimal(code)));
}

} // namespace Toolkit::PatternRun
