#include "toolkit/regExp/RegExp.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/regExp/MatchGroups.Private.h"
#include "toolkit/regExp/PatternEngine.Private.h"
#include "toolkit/regExp/PatternRun.Private.h"
#include "toolkit/regExp/WholeMatchReplacement.Private.h"

namespace Toolkit {
namespace {

// Returns how many bytes longer `text` is than `subject`, from which it was made; negative if
// shorter.
int MeasureGrowth(const TString<char>& text, const TString<char>& subject)
{
    return static_cast<int>(text.size() - subject.size());
}

} // namespace

RegExp::RegExp(const TString<char>& pattern, RegExpOptions::Modifiers modifiers)
    : m_pattern(RunReportingExceptions([&] { return pattern; })), m_modifiers(modifiers)
{
}

RegExp::RegExp(const TString<wchar_t>& pattern, RegExpOptions::Modifiers modifiers)
    : m_pattern(RunReportingExceptions([&] { return Base::EncodeUtf8(pattern); })),
      m_modifiers(modifiers)
{
}

bool RegExp::IsMatch(const TString<char>& subject) const
{
    return RunReportingExceptions([&] {
        int offsets[MatchResult::c_ovectorSize];
        return ExecutePattern(CompilePattern(m_pattern), subject, 0, 0, offsets) >= 1;
    });
}

bool RegExp::IsMatch(const TString<wchar_t>& subject) const
{
    return RunReportingExceptions([&] { return IsMatch(Base::EncodeUtf8(subject)); });
}

smart_ptr<MatchResult> RegExp::Match(const TString<char>& subject) const
{
    return RunReportingExceptions([&] {
        smart_ptr<MatchResult> result(new MatchResult());
        result->subject = subject;
        result->pattern = m_pattern;
        CompilePattern(*result);
        ExecutePattern(*result, 0);
        ReadGroups(*result);
        return result;
    });
}

smart_ptr<MatchResult> RegExp::Match(const TString<wchar_t>& subject) const
{
    return RunReportingExceptions([&] { return Match(Base::EncodeUtf8(subject)); });
}

TString<char> RegExp::Replace(const TString<char>& replacement, const TString<char>& subject,
                              unsigned char)
{
    return RunReportingExceptions(
        [&] { return WholeMatchReplacement(m_pattern, replacement, subject).Run(); });
}

TString<char> RegExp::Replace(const std::vector<TString<char>>& replacements,
                              const TString<char>& subject)
{
    return RunReportingExceptions([&] {
        const smart_ptr<MatchResult> result = Match(subject);
        if (!result->Success())
            return TString<char>();

        TString<char> text = subject;
        for (int group = 1; group < result->resultCode; ++group) {
            const auto index = static_cast<std::size_t>(group - 1);
            const TString<char>& replacement =
                index < replacements.size() ? replacements[index] : TString<char>::Empty();
            RegExp_replace(result, group, text, replacement, MeasureGrowth(text, subject));
        }
        return text;
    });
}

TString<char> RegExp::Replace(ReplacementMappedStrings& replacements, const TString<char>& subject)
{
    return RunReportingExceptions([&] {
        const smart_ptr<MatchResult> result = Match(subject);
        if (!result->Success())
            return TString<char>();

        TString<char> text = subject;
        for (int number = 1; number < result->resultCode; ++number) {
            const smart_ptr<Group> group = (*result)[static_cast<unsigned short>(number)];
            if (group.IsValid() && !group->name.empty())
                RegExp_replace(result, number, text, replacements[group->name],
                               MeasureGrowth(text, subject));
        }
        return text;
    });
}

TString<char> RegExp::GetEngineVersion()
{
    return Base::TryOr({}, [] { return TString<char>(Pcre::GetVersion()); });
}

void RegExp::RegExp_compile(const smart_ptr<MatchResult>& result) const
{
    RunReportingExceptions([&] { CompilePattern(*result); });
}

void RegExp::RegExp_exec(const smart_ptr<MatchResult>& result, unsigned short startOffset) const
{
    RunReportingExceptions([&] { ExecutePattern(*result, startOffset); });
}

void RegExp::RegExp_replace(const smart_ptr<MatchResult>& result, int group, TString<char>& target,
                            const TString<char>& replacement, int shift)
{
    const GroupRange range = GetGroupRange(*result, group);
    const long long position = range.begin + static_cast<long long>(shift);
    const bool isInside = position >= 0 && position <= static_cast<long long>(target.size());
    if (!range.IsValid() || !isInside)
        return;
    RunReportingExceptions(
        [&] { target.replace(static_cast<std::size_t>(position), range.Length(), replacement); });
}

} // namespace Toolkit
