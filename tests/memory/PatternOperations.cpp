#include "toolkit/regExp/RegExp.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "memory/Sweep.h"

namespace Toolkit::TestSupport {
namespace {

const TString<char> c_pattern = "(?<first_word_of_it>[a-z]+) (?<second_word_of_it>[a-z]+)";
const TString<wchar_t> c_widePattern = L"(?<first_word_of_it>[a-z]+) (?<second_word_of_it>[a-z]+)";
const TString<char> c_subject = "aratherlongfirstword aratherlongsecondword";
const TString<wchar_t> c_wideSubject = L"aratherlongfirstword aratherlongsecondword";
const TString<char> c_long = "a text that is too long for the string itself";

const RegExp& GetExpression()
{
    static const RegExp expression(c_pattern, RegExpOptions::None);
    return expression;
}

void ConstructsExpression(Attempt& attempt)
{
    bool isCreated = false;
    if (attempt.Run(Rule::RegExp, [&] {
            const RegExp expression(c_pattern, RegExpOptions::None);
            isCreated = true;
        }))
        attempt.Expect(isCreated);
}

void ConstructsWideExpression(Attempt& attempt)
{
    bool isCreated = false;
    if (attempt.Run(Rule::RegExp, [&] {
            const RegExp expression(c_widePattern, RegExpOptions::None);
            isCreated = true;
        }))
        attempt.Expect(isCreated);
}

template <typename Text>
void TestsMatch(Attempt& attempt, const Text& subject)
{
    bool isMatch = false;
    if (attempt.Run(Rule::RegExp, [&] { isMatch = GetExpression().IsMatch(subject); }))
        attempt.Expect(isMatch);
    attempt.ExpectAlways(GetExpression().IsMatch(subject));
}

template <typename Text>
void Matches(Attempt& attempt, const Text& subject)
{
    smart_ptr<MatchResult> result;
    if (attempt.Run(Rule::RegExp, [&] { result = GetExpression().Match(subject); }))
        attempt.Expect(result->Count() == 3 && result->groups[2]->value == "aratherlongsecondword");
    attempt.ExpectAlways(GetExpression().Match(subject)->Count() == 3);
}

void GetsEngineVersion(Attempt& attempt)
{
    TString<char> version;
    attempt.Run([&] { version = RegExp::GetEngineVersion(); });
    attempt.Expect(version.find("PCRE") == 0, version.empty());
}

void ReplacesWhole(Attempt& attempt)
{
    RegExp expression("[a-z]+", RegExpOptions::None);
    TString<char> text;
    if (attempt.Run(Rule::RegExp, [&] { text = expression.Replace(c_long, c_subject, 0); }))
        attempt.Expect(text.size() == 2 * c_long.size() + 1);
}

void ReplacesByNumber(Attempt& attempt)
{
    RegExp expression(c_pattern, RegExpOptions::None);
    const std::vector<TString<char>> replacements{c_long, c_long};
    TString<char> text;
    if (attempt.Run(Rule::RegExp, [&] { text = expression.Replace(replacements, c_subject); }))
        attempt.Expect(text.size() == 2 * c_long.size() + 1);
}

void ReplacesByName(Attempt& attempt)
{
    RegExp expression(c_pattern, RegExpOptions::None);
    RegExp::ReplacementMappedStrings replacements{{"first_word_of_it", c_long}};
    TString<char> text;
    if (attempt.Run(Rule::RegExp, [&] { text = expression.Replace(replacements, c_subject); }))
        attempt.Expect(text.size() == c_long.size() + 1);
}

void RunsSteps(Attempt& attempt)
{
    RegExp expression(c_pattern, RegExpOptions::None);
    const smart_ptr<MatchResult> result(new MatchResult());
    result->pattern = c_pattern;
    result->subject = c_subject;
    TString<char> text = c_subject;
    if (attempt.Run(Rule::RegExp, [&] {
            expression.RegExp_compile(result);
            expression.RegExp_exec(result, 0);
            expression.RegExp_replace(result, 1, text, c_long, 0);
        }))
        attempt.Expect(text.size() > c_long.size());
    else
        attempt.ExpectAlways(text == c_subject);
}

void Throws(Attempt& attempt)
{
    static const TString<wchar_t> message = L"a message that is too long for the string itself";
    const bool hasReturned = attempt.Run(Rule::NoThrow, [&] {
        try {
            RegExpException::Throw(message);
        } catch (const smart_ptr<RegExpException>& exception) {
            attempt.ExpectAlways(!exception->message.empty() && exception->function == "Throw");
        }
    });
    attempt.ExpectAlways(hasReturned);
}

void ThrowsOutOfMemory(Attempt& attempt)
{
    bool isCaught = false;
    attempt.Run([&] {
        try {
            RegExpException::ThrowOutOfMemory();
        } catch (const smart_ptr<RegExpException>& exception) {
            isCaught = exception->function == "Throw";
        }
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && isCaught);
}

void ConstructsException(Attempt& attempt)
{
    attempt.Run([] { const RegExpException exception; });
    attempt.ExpectAlways(!attempt.HasAllocationFailed());
}

void ConstructsGroup(Attempt& attempt)
{
    bool isCreated = false;
    if (attempt.Run(Rule::BadAlloc, [&] { isCreated = Group(c_long, 1).value == c_long; }))
        attempt.Expect(isCreated);
}

void ConstructsResult(Attempt& attempt)
{
    bool isSuccess = true;
    attempt.Run([&] {
        MatchResult result;
        isSuccess = result.Success();
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && !isSuccess);
}

void AddsGroup(Attempt& attempt)
{
    GroupCollection groups;
    const smart_ptr<Group> group(new Group(c_long, 0));
    const bool isAdded = attempt.Run(Rule::BadAlloc, [&] { groups.Add(group); });
    attempt.ExpectAlways(groups.Count() == (isAdded ? 1u : 0u));
}

void NamesGroup(Attempt& attempt)
{
    GroupCollection groups;
    groups.Add(smart_ptr<Group>(new Group(c_long, 0)));
    const bool isNamed = attempt.Run(Rule::BadAlloc, [&] { groups.AddNamedGroupKey(c_long, 0); });
    attempt.ExpectAlways(groups.names.size() == (isNamed ? 1u : 0u) &&
                         groups[0]->name == (isNamed ? c_long : TString<char>()));
}

void UsesGroups(Attempt& attempt)
{
    auto groups = std::make_unique<GroupCollection>();
    groups->Add(smart_ptr<Group>(new Group(c_long, 0)));
    groups->AddNamedGroupKey(c_long, 0);
    bool isRight = false;
    attempt.Run([&] {
        isRight = groups->Count() == 1 && (*groups)[0].IsValid() && !(*groups)[1].IsValid() &&
                  groups->GetGroup(c_long).IsValid() && !groups->GetGroup(c_subject).IsValid();
        groups->Clear();
        groups.reset();
        const GroupCollection none;
    });
    attempt.ExpectAlways(!attempt.HasAllocationFailed() && isRight);
}

} // namespace

std::vector<Operation> PatternOperations()
{
    return {
        {"Toolkit::RegExp::RegExp", ConstructsExpression},
        {"Toolkit::RegExp::RegExp", ConstructsWideExpression},
        {"Toolkit::RegExp::GetEngineVersion", GetsEngineVersion},
        {"Toolkit::RegExp::IsMatch", [](Attempt& attempt) { TestsMatch(attempt, c_subject); }},
        {"Toolkit::RegExp::IsMatch", [](Attempt& attempt) { TestsMatch(attempt, c_wideSubject); }},
        {"Toolkit::RegExp::Match", [](Attempt& attempt) { Matches(attempt, c_subject); }},
        {"Toolkit::RegExp::Match", [](Attempt& attempt) { Matches(attempt, c_wideSubject); }},
        {"Toolkit::RegExp::Replace", ReplacesWhole},
        {"Toolkit::RegExp::Replace", ReplacesByNumber},
        {"Toolkit::RegExp::Replace", ReplacesByName},
        {"Toolkit::RegExp::RegExp_compile", RunsSteps},
        {"Toolkit::RegExp::RegExp_exec", RunsSteps},
        {"Toolkit::RegExp::RegExp_replace", RunsSteps},
        {"Toolkit::RegExpException::Throw", Throws},
        {"Toolkit::RegExpException::ThrowOutOfMemory", ThrowsOutOfMemory},
        {"Toolkit::RegExpException::RegExpException", ConstructsException},
        {"Toolkit::RegExpException::~RegExpException", ConstructsException},
        {"Toolkit::Group::Group", ConstructsGroup},
        {"Toolkit::MatchResult::MatchResult", ConstructsResult},
        {"Toolkit::MatchResult::~MatchResult", ConstructsResult},
        {"Toolkit::MatchResult::Success", ConstructsResult},
        {"Toolkit::GroupCollection::GroupCollection", UsesGroups},
        {"Toolkit::GroupCollection::~GroupCollection", UsesGroups},
        {"Toolkit::GroupCollection::Count", UsesGroups},
        {"Toolkit::GroupCollection::operator[]", UsesGroups},
        {"Toolkit::GroupCollection::GetGroup", UsesGroups},
        {"Toolkit::GroupCollection::Clear", UsesGroups},
        {"Toolkit::GroupCollection::Add", AddsGroup},
        {"Toolkit::GroupCollection::AddNamedGroupKey", NamesGroup},
    };
}

} // namespace Toolkit::TestSupport
