// Runs the same calls with both engines, which are compiled into this program, and compares all
// results that a caller can observe.

#include "toolkit/regExp/RegExp.h"

#include "support/Sanitizers.h"
#include "support/Soak.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "regExp/CaughtException.h"
#include "regExp/FeatureSamples.h"
#include "regExp/Samples.h"
#include "regExp/engines/EngineTable.h"
#include "regExp/engines/RandomPattern.h"

namespace Toolkit {
namespace {

using TestSupport::EngineTable;
using TestSupport::RandomPattern;

struct Call {
    std::string pattern;
    std::string subject;
    std::string replacement;
    int options = 0;
    unsigned short start = 0;
};

std::ostream& operator<<(std::ostream& stream, const Call& call)
{
    return stream << testing::PrintToString(call.pattern) << " in "
                  << testing::PrintToString(call.subject) << " by "
                  << testing::PrintToString(call.replacement) << ", options 0x" << std::hex
                  << call.options << std::dec << ", from " << call.start;
}

// All results of one call that a caller can observe, as text, and how the call failed.
struct Outcome {
    std::string text;
    bool isInvalidPattern = false;
    bool reachesLimit = false;
};

void WriteOffsets(std::ostream& stream, const MatchResult& result)
{
    stream << result.resultCode << ':';
    const int pairs = result.resultCode == 0 ? 20 : std::max(result.resultCode, 0);
    for (int i = 0; i < 2 * pairs; ++i)
        stream << ' ' << result.ovector[i];
}

void WriteResult(std::ostream& stream, const MatchResult& result)
{
    WriteOffsets(stream, result);
    for (const smart_ptr<Group>& group : result.groups)
        stream << " [" << group->index << ' ' << group->name << ' ' << group->value << ']';
    for (const auto& [name, number] : result.names)
        stream << " {" << name << ' ' << number << '}';
}

// Appends what `operation` writes and how it fails. Omits compile messages, which differ between
// the engines.
template <typename Operation>
void Try(Outcome& outcome, const char* name, const Operation& operation)
{
    std::ostringstream stream;
    const auto exception = TestSupport::CaughtException([&] { operation(stream); });
    outcome.text += std::string("\n") + name + ": " + stream.str();
    if (!exception.IsValid())
        return;
    const std::string& message = exception->message;
    const bool isInvalidPattern = message.find("(@offset: ") != std::string::npos;
    outcome.isInvalidPattern |= isInvalidPattern;
    // The error codes for the limits of steps, depth and memory, and for endless recursion. Each
    // code overwrites the start of "RegExp::Match return error: ".
    for (const char* limit : {"-8g", "-21E", "-6g", "-26E"})
        outcome.reachesLimit |= message.rfind(limit, 0) == 0;
    outcome.text += isInvalidPattern ? "does not compile" : message;
}

void TrySearch(Outcome& outcome, const RegExp& regExp, const Call& call)
{
    const smart_ptr<MatchResult> result(new MatchResult());
    result->subject = call.subject;
    result->pattern = call.pattern;
    result->execOptions = call.options;
    Try(outcome, "search", [&](std::ostream& stream) {
        regExp.RegExp_compile(result);
        // For a subject that is not UTF-8, the first pair of offsets describes the fault.
        const auto exception =
            TestSupport::CaughtException([&] { regExp.RegExp_exec(result, call.start); });
        WriteOffsets(stream, *result);
        if (result->resultCode == -10)
            stream << " at " << result->ovector[0] << " fault " << result->ovector[1];
        if (exception.IsValid())
            throw smart_ptr<RegExpException>(exception);
    });
}

bool ContainsAny(const std::string& text, std::initializer_list<const char*> parts)
{
    return std::any_of(parts.begin(), parts.end(),
                       [&](const char* part) { return text.find(part) != std::string::npos; });
}

// With \K in a look-behind, a match may begin inside the previous replacement, so replacing may
// never end.
bool MayReplaceForEver(const std::string& pattern)
{
    return ContainsAny(pattern, {"\\K"}) && ContainsAny(pattern, {"(?<=", "(?<!"});
}

Outcome Run(const EngineTable& engine, const Call& call)
{
    TestSupport::s_engine = &engine;
    Outcome outcome;
    RegExp regExp(TString<char>(call.pattern), RegExpOptions::None);
    Try(outcome, "IsMatch", [&](std::ostream& stream) { stream << regExp.IsMatch(call.subject); });
    Try(outcome, "Match", [&](std::ostream& stream) {
        const auto result = regExp.Match(call.subject);
        WriteResult(stream, *result);
    });
    TrySearch(outcome, regExp, call);
    if (!MayReplaceForEver(call.pattern)) {
        Try(outcome, "Replace", [&](std::ostream& stream) {
            stream << regExp.Replace(call.replacement, call.subject, 0);
        });
    }
    Try(outcome, "Replace by list", [&](std::ostream& stream) {
        stream << regExp.Replace(std::vector<TString<char>>{call.replacement, "2"}, call.subject);
    });
    RegExp::ReplacementMappedStrings map{{"n", call.replacement}};
    Try(outcome, "Replace by map",
        [&](std::ostream& stream) { stream << regExp.Replace(map, call.subject); });
    for (const auto& [name, text] : map)
        outcome.text += " {" + name + ' ' + text + '}';
    TestSupport::s_engine = &TestSupport::c_pcre;
    return outcome;
}

// Returns the known fault of an engine that may explain why the outcomes differ; "different" if
// there is none.
const char* ExplainDifference(const Call& call, const Outcome& second)
{
    if (ContainsAny(call.pattern, {")?+", ")*+", ")++", "}+"}))
        return "known: PCRE 1 backtracks into a possessive group, or keeps what it captured";
    if (ContainsAny(call.pattern, {"[^\\n]"}))
        return "known: with [^\\n] in the pattern, only PCRE 1 also searches between CR and LF";
    if (ContainsAny(call.pattern, {"(*ACCEPT)"}) && ContainsAny(second.text, {"-14E"}))
        return "known: PCRE 2 fails at (*ACCEPT) in a called group of an assertion";
    if (ContainsAny(call.pattern, {"){0}"}))
        return "known: PCRE 2 may find no match after alternatives that occur {0} times";
    if (ContainsAny(call.pattern, {"(?xx)"}))
        return "known: with PCRE 2, (?xx) skips spaces in classes too";
    return "different";
}

// Returns the rare construct that may explain why the outcomes differ: the engines themselves
// disagree on what verbs do inside assertions and calls, on where a search with (*COMMIT) begins,
// and on which groups a condition or a repeated assertion leaves set. Returns "different" if there
// is none.
const char* ExplainRareDifference(const Call& call)
{
    if (ContainsAny(call.pattern, {"(*COMMIT)"}))
        return "known: (*COMMIT)";
    if (ContainsAny(call.pattern, {"(*PRUNE", "(*SKIP", "(*THEN"}))
        return "known: (*PRUNE), (*SKIP) or (*THEN)";
    if (ContainsAny(call.pattern, {"(?("}))
        return "known: a condition";
    if (ContainsAny(call.pattern, {"(?=", "(?!", "(?<=", "(?<!"}))
        return "known: an assertion";
    return "different";
}

// Counts the outcomes of the calls of a sweep.
class Tally {
public:
    explicit Tally(bool hasRareConstructs = false) : m_hasRareConstructs(hasRareConstructs) {}

    // Runs `call` with both engines and counts the outcome. Prints the first `c_maxPrinted`
    // differences of each kind.
    void Add(const Call& call)
    {
        const Outcome first = Run(TestSupport::c_pcre, call);
        const Outcome second = Run(TestSupport::c_pcre2, call);
        const std::string kind = Classify(call, first, second);
        const bool differs = kind == "different" || kind.rfind("known: ", 0) == 0;
        if (++m_counts[kind] <= c_maxPrinted && differs)
            std::cout << call << "\nPCRE 1:" << first.text << "\nPCRE 2:" << second.text << '\n';
    }

    void Report() const
    {
        for (const auto& [what, count] : m_counts)
            TestSupport::Covered(what + ": " + std::to_string(count));
    }

    int Count(const std::string& what) const
    {
        const auto found = m_counts.find(what);
        return found != m_counts.end() ? found->second : 0;
    }

    // Returns the number of calls that differ because of a known fault.
    int CountKnown() const
    {
        int sum = 0;
        for (const auto& [what, count] : m_counts)
            sum += what.rfind("known: ", 0) == 0 ? count : 0;
        return sum;
    }

private:
    static constexpr int c_maxPrinted = 20;

    std::string Classify(const Call& call, const Outcome& first, const Outcome& second) const
    {
        if (first.isInvalidPattern && second.isInvalidPattern)
            return "neither engine accepts the pattern";
        if (first.isInvalidPattern || second.isInvalidPattern)
            return first.isInvalidPattern ? "only PCRE 2 accepts the pattern"
                                          : "only PCRE 1 accepts the pattern";
        if (first.reachesLimit || second.reachesLimit)
            return "a limit ends the call";
        if (first.text == second.text)
            return "equal";
        const std::string cause = ExplainDifference(call, second);
        return cause == "different" && m_hasRareConstructs ? ExplainRareDifference(call) : cause;
    }

    bool m_hasRareConstructs;
    std::map<std::string, int> m_counts;
};

// Number of random calls in the sample with rare constructs; the other sample has four times as
// many. Fewer under a sanitizer, where a call takes much longer.
#ifdef TOOLKIT_SANITIZER
constexpr int c_sampleSize = 1'000;
#else
constexpr int c_sampleSize = 4'000;
#endif

// Each batch has its own seed, so that a call can be reproduced.
constexpr int c_callsPerSeed = c_sampleSize;

Call RandomCall(RandomPattern& random)
{
    Call call{random.Pattern(), random.Subject(), random.Replacement(), random.Options(), 0};
    call.start = random.Random().Number<unsigned short>(
        0, static_cast<unsigned short>(call.subject.size() + 1));
    return call;
}

// Adds `rounds` random calls to `tally` and reports it.
void AddRandomCalls(Tally& tally, unsigned int firstSeed, bool hasRareConstructs, int rounds)
{
    for (int round = 0; round < rounds; round += c_callsPerSeed) {
        const unsigned int seed = firstSeed + static_cast<unsigned int>(round / c_callsPerSeed);
        std::cout << "seed " << seed << " after " << round << " calls of " << rounds << std::endl;
        RandomPattern random(seed, hasRareConstructs);
        for (int i = 0; i < c_callsPerSeed; ++i)
            tally.Add(RandomCall(random));
    }
    tally.Report();
}

TEST(EngineDifferenceTest, ReturnsEqualResultsForRandomCalls)
{
    const int rounds = TestSupport::SoakRounds(4 * c_sampleSize, 800'000);
    Tally tally;
    AddRandomCalls(tally, 1'000, false, rounds);

    EXPECT_EQ(tally.Count("different"), 0);
    // Known faults are rare. If they seem to explain many differences, there is another cause.
    EXPECT_LE(tally.CountKnown(), 1 + rounds / 50'000);
    // The sweep proves little if few calls have comparable results.
    EXPECT_GT(tally.Count("equal"), rounds / 3);
}

// ExplainRareDifference() lists the differences. The sample contains none, the whole sweep a few.
TEST(EngineDifferenceTest, DiffersRarelyForRareConstructs)
{
    const int rounds = TestSupport::SoakRounds(c_sampleSize, 200'000);
    Tally tally(true);
    AddRandomCalls(tally, 2'000, true, rounds);

    const int maxKnown = rounds == c_sampleSize ? 0 : rounds / 5'000;
    EXPECT_EQ(tally.Count("different"), 0);
    EXPECT_LE(tally.CountKnown(), maxKnown);
    EXPECT_GT(tally.Count("equal"), rounds / 3);
}

TEST(EngineDifferenceTest, ReturnsEqualResultsForTheSamples)
{
    Tally tally;
    for (const char* pattern : TestSupport::c_patterns) {
        for (const char* subject : TestSupport::c_subjects) {
            for (const char* replacement : {"", "a", "xyz"})
                tally.Add({pattern, subject, replacement});
        }
    }
    tally.Report();

    EXPECT_EQ(tally.Count("different"), 0);
}

TEST(EngineDifferenceTest, ReturnsEqualResultsForTheFeatureSamples)
{
    Tally tally;
    for (const TestSupport::FeatureSample& sample : TestSupport::c_featureSamples) {
        for (const char* subject : sample.subjects)
            tally.Add({sample.pattern, subject, "<>"});
    }
    tally.Report();

    EXPECT_EQ(tally.Count("different"), 0);
    // "(?xx)", the only sample with a known difference.
    EXPECT_EQ(tally.CountKnown(), 1);
}

} // namespace
} // namespace Toolkit
