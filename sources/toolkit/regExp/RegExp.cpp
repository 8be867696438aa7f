#include "toolkit/regExp/RegExp.h"

#include "toolkit/base/OutOfMemory.h"
#include "toolkit/base/Utf8.h"
#include "toolkit/regExp/MatchGroups.Private.h"
#include "toolkit/regExp/PatternEngine.Private.h"
#include "toolkit/regExp/PatternRun.Private.h"
#include "toolkit/regExp/WholeMatchReplacement.Private.h"

namespace Toolkit {
namespace {

using PatternRun::ReportingOutOfMemory;

// By how many bytes `text` has grown since it was `subject`; negative when it shrank.
int Growth(const TString<char>& text, const TString<char>& subject)
{
    return static_cast<int>(static_cast<unsigned int>(text.size() - subject.size()));
}

} // namespace

RegExp::RegExp(const TString<char>& pattern, RegExpOptions::Modifiers modifiers)
    : m_pattern(ReportingOutOfMemory([&] { return pattern; })), m_modifiers(modifiers)
{
}

RegExp::RegExp(const TString<wchar_t>& pattern, RegExpOptions::Modifiers modifiers)
    : m_pattern(ReportingOutOfMemory([&] { return Base::EncodeUtf8(pattern); })),
      m_modifiers(modifiers)
{
}

bool RegExp::IsMatch(const TString<char>& subject) const
{
    return ReportingOutOfMemory([&] {
        int offsets[MatchResult::c_ovectorSize];
        return PatternRun::Execute(PatternRun::Compile(m_pattern), subject, 0, 0, offsets) >= 1;
    });
}

bool RegExp::IsMatch(const TString<wchar_t>& subject) const
{
    return ReportingOutOfMemory([&] { return IsMatch(Base::EncodeUtf8(subject)); });
}

smart_ptr<MatchResult> RegExp::Match(const TString<char>& subject) const
{
    return ReportingOutOfMemory([&] {
        smart_ptr<MatchResult> result(new MatchResult());
        result->subject = subject;
        result->pattern = m_pattern;
        PatternRun::Compile(*result);
        PatternRun::Execute(*result, 0);
        MatchGroups::Read(*result);
        return result;
    });
}

smart_ptr<MatchResult> RegExp::Match(const TString<wchar_t>& subject) const
{
    return ReportingOutOfMemory([&] { return Match(Base::EncodeUtf8(subject)); });
}

TString<char> RegExp::Replace(const TString<char>& replacement, const TString<char>& subject,
                              unsigned char)
{
    return ReportingOutOfMemory(
        [&] { return WholeMatchReplacement(m_pattern, replacement, subject).Run(); });
}

TString<char> RegExp::Replace(const std::vector<TString<char>>& replacements,
                              const TString<char>& subject)
{
    return ReportingOutOfMemory([&] {
        const smart_ptr<MatchResult> result = Match(subject);
        if (!result->Success())
            return TString<char>();

        TString<char> text = subject;
        for (int group = 1; group < result->resultCode; ++group) {
            const auto entry = static_cast<std::size_t>(group - 1);
            const TString<char>& replacement =
                entry < replacements.size() ? replacements[entry] : TString<char>::Empty();
            RegExp_replace(result, group, text, replacement, Growth(text, subject));
        }
        return text;
    });
}

TString<char> RegExp::Replace(ReplacementMappedStrings& replacements, const TString<char>& subject)
{
    return ReportingOutOfMemory([&] {
        const smart_ptr<MatchResult> result = Match(subject);
        if (!result->Success())
            return TString<char>();

        TString<char> text = subject;
        for (int number = 1; number < result->resultCode; ++number) {
            const smart_ptr<Group> group = (*result)[static_cast<unsigned short>(number)];
            if (group.IsValid() && !group->name.empty())
                RegExp_replace(result, number, text, replacements[group->name],
                               Growth(text, subject));
        }
        return text;
    });
}

TString<char> RegExp::GetEngineVersion()
{
    return Base::ResultOr({}, [] { return TString<char>(PatternEngine::GetVersion()); });
}

void RegExp::RegExp_compile(const smart_ptr<MatchResult>& result) const
{
    ReportingOutOfMemory([&] { PatternRun::Compile(*result); });
}

void RegExp::RegExp_exec(const smart_ptr<MatchResult>& result, unsigned short startOffset) const
{
    ReportingOutOfMemory([&] { PatternRun::Execute(*result, startOffset); });
}

void RegExp::RegExp_replace(const smart_ptr<MatchResult>& result, int group, TString<char>& target,
                            const TString<char>& replacement, int shift)
{
    const MatchGroups::Range range = MatchGroups::GetRange(*result, group);
    const long long position = range.begin + static_cast<long long>(shift);
    const bool isInside = position >= 0 && position <= static_cast<long long>(target.size());
    if (!range.IsValid() || !isInside)
        return;
    ReportingOutOfMemory(
        [&] { target.replace(static_cast<std::size_t>(position), range.Length(), replacement); });
}

} // namespace Toolkit
