#include "toolkit/logging/ILogger.h"

#include "toolkit/encoding/StringConvert.h"
#include "toolkit/logging/NullLogger.h"

#include "support/CapturedLog.h"
#include "support/OutOfMemory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <locale>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace Toolkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::CapturedLog;

class Sink : public ILogger {
public:
    using ILogger::ILogger;
    void Write(const TString<wchar_t>& text) override { pieces.push_back(text); }

    std::vector<std::wstring> pieces;
};

// Returns the pieces that one insertion writes.
template <typename Value>
std::vector<std::wstring> Insert(const Value& value)
{
    const CapturedLog log;
    ILogger::GetLogger() << value;
    return log.Pieces();
}

bool IsNullLogger(const smart_ptr<ILogger>& logger)
{
    return dynamic_cast<NullLogger*>(logger.Get()) != nullptr;
}

TEST(ILoggerTest, DefinesTheLineTokens)
{
    EXPECT_EQ(ILogger::c_strLogToken1, L" ");
    EXPECT_EQ(ILogger::c_strLogToken2, L" : ");
    EXPECT_EQ(ILogger::c_strLogToken3, L"\n");
}

TEST(ILoggerTest, NumbersSeveritiesFromTheMostSevere)
{
    EXPECT_THAT(Insert(SeverityError), ElementsAre(L"0"));
    EXPECT_THAT(Insert(SeverityWarning), ElementsAre(L"1"));
    EXPECT_THAT(Insert(SeverityInfo), ElementsAre(L"2"));
    EXPECT_THAT(Insert(SeverityDebug), ElementsAre(L"3"));
    EXPECT_THAT(Insert(SeverityVerbose), ElementsAre(L"4"));
    EXPECT_EQ(SetSeverity(SeverityDebug).GetSeverity(), SeverityDebug);
}

TEST(ILoggerTest, WritesValuesAtLeastAsSevereAsTheThreshold)
{
    for (int threshold = SeverityError; threshold <= SeverityVerbose; ++threshold) {
        for (int severity = SeverityError; severity <= SeverityVerbose; ++severity) {
            SCOPED_TRACE(testing::Message() << severity << " into " << threshold);
            Sink sink(static_cast<LogSeverity>(threshold));
            sink << SetSeverity(static_cast<LogSeverity>(severity));
            sink << 1;
            EXPECT_EQ(sink.pieces.size(), severity <= threshold ? 1u : 0u);
        }
    }
}

TEST(ILoggerTest, StartsAtVerboseSeverity)
{
    Sink verbose(SeverityVerbose);
    Sink debug(SeverityDebug);

    verbose << L"text";
    debug << L"text";
    EXPECT_THAT(verbose.pieces, ElementsAre(L"text"));
    EXPECT_THAT(debug.pieces, IsEmpty());
}

TEST(ILoggerTest, PassesTheRestOfAChainToTheProcessLogger)
{
    const CapturedLog log;
    Sink sink(SeverityVerbose);

    ILogger& result = sink << L"a" << L"b" << 3;

    EXPECT_THAT(sink.pieces, ElementsAre(L"a"));
    EXPECT_THAT(log.Pieces(), ElementsAre(L"b", L"3"));
    EXPECT_EQ(&result, &ILogger::GetLogger());
}

TEST(ILoggerTest, ReturnsTheProcessLoggerFromAFilteredInsertion)
{
    const CapturedLog log;
    Sink sink(SeverityError);

    sink << L"filtered" << L"kept";
    sink << SetSeverity(SeverityDebug) << L"kept too";

    EXPECT_THAT(sink.pieces, IsEmpty());
    EXPECT_THAT(log.Pieces(), ElementsAre(L"kept", L"kept too"));
}

// Calls `check` with a value of every type that can be inserted.
template <typename Check>
void ForEachInsertable(Check check)
{
    const wchar_t* const widePointer = L"wide";
    const char* const narrowPointer = "narrow";
    check(TString<wchar_t>(L"text"));
    check(TString<char>("text"));
    check(widePointer);
    check(narrowPointer);
    check(L"wide array");
    check("narrow array");
    check(1LL);
    check(1);
    check(short{1});
    check(1ULL);
    check(1U);
    check(static_cast<unsigned short>(1));
    check(1L);
    check(1UL);
    check(1.5);
    check(1.5F);
    check(std::wstring_view(L"wide view"));
    check(std::string_view("narrow view"));
    check(SeverityError);
    check(true);
}

TEST(ILoggerTest, ReturnsTheProcessLoggerFromEveryInsertion)
{
    const CapturedLog log;
    Sink sink(SeverityVerbose);
    std::size_t count = 0;
    ForEachInsertable([&](const auto& value) {
        EXPECT_EQ(&(sink << value), &ILogger::GetLogger());
        EXPECT_EQ(sink.pieces.size(), ++count);
    });
    EXPECT_THAT(log.Pieces(), IsEmpty());
}

TEST(ILoggerTest, FiltersEveryInsertion)
{
    const CapturedLog log;
    Sink sink(SeverityDebug);
    ForEachInsertable([&](const auto& value) {
        EXPECT_EQ(&(sink << value), &ILogger::GetLogger());
        EXPECT_THAT(sink.pieces, IsEmpty());
    });
    EXPECT_THAT(log.Pieces(), IsEmpty());
}

TEST(ILoggerTest, DoesNotConvertAFilteredValue)
{
    const CapturedLog log(SeverityError);
    const TString<char> narrow("a string that needs memory when it is widened");
    ILogger& logger = ILogger::GetLogger() << SetSeverity(SeverityInfo);

    const TestSupport::AllocationLimit none(0);
    EXPECT_NO_THROW(logger << 1234567890 << 1234567890123LL << narrow);
    EXPECT_NO_THROW(logger << "a long narrow array" << L"a long wide array");
    EXPECT_NO_THROW(logger << std::string_view("a long narrow view") << 1.23456e-300);
}

TEST(ILoggerTest, WritesASingleCharacterAsItsCode)
{
    EXPECT_THAT(Insert('A'), ElementsAre(L"65"));
    EXPECT_THAT(Insert(L'\u20AC'), ElementsAre(L"8364"));
}

TEST(ILoggerTest, WritesNumbersAsPlainDecimals)
{
    EXPECT_THAT(Insert(short{-5}), ElementsAre(L"-5"));
    EXPECT_THAT(Insert(static_cast<unsigned short>(65535)), ElementsAre(L"65535"));
    EXPECT_THAT(Insert(std::numeric_limits<int>::min()), ElementsAre(L"-2147483648"));
    EXPECT_THAT(Insert(4294967295u), ElementsAre(L"4294967295"));
    EXPECT_THAT(Insert(0), ElementsAre(L"0"));
    EXPECT_THAT(Insert(-1234567L), ElementsAre(L"-1234567"));
    EXPECT_THAT(Insert(1234567UL), ElementsAre(L"1234567"));
    EXPECT_THAT(Insert(std::numeric_limits<long long>::min()),
                ElementsAre(L"-9223372036854775808"));
    EXPECT_THAT(Insert(std::numeric_limits<unsigned long long>::max()),
                ElementsAre(L"18446744073709551615"));
}

TEST(ILoggerTest, IgnoresTheGlobalLocale)
{
    class Grouping : public std::numpunct<wchar_t> {
        std::string do_grouping() const override { return "\3"; }
        wchar_t do_thousands_sep() const override { return L'.'; }
        string_type do_truename() const override { return L"ja"; }
    };
    const std::locale old = std::locale::global(std::locale(std::locale(), new Grouping));

    EXPECT_THAT(Insert(1234567), ElementsAre(L"1234567"));
    EXPECT_THAT(Insert(true), ElementsAre(L"1"));
    std::locale::global(old);
}

TEST(ILoggerTest, WritesFloatingPointNumbersWithSixDigits)
{
    const std::pair<double, const wchar_t*> cases[] = {{0.1, L"0.1"},
                                                       {-2.5, L"-2.5"},
                                                       {3.0, L"3"},
                                                       {1234567.0, L"1.23457e+06"},
                                                       {1.0 / 3.0, L"0.333333"},
                                                       {1e-300, L"1e-300"}};
    for (const auto& [value, expected] : cases) {
        EXPECT_THAT(Insert(value), ElementsAre(expected));
        EXPECT_EQ(StringConvert::UStringFromDouble(value), expected);
    }
    EXPECT_THAT(Insert(0.1F), ElementsAre(L"0.1"));
    EXPECT_THAT(Insert(16777216.0F), ElementsAre(L"1.67772e+07"));
}

TEST(ILoggerTest, WritesBoolsAsDigits)
{
    EXPECT_THAT(Insert(true), ElementsAre(L"1"));
    EXPECT_THAT(Insert(false), ElementsAre(L"0"));
}

TEST(ILoggerTest, WritesWideStringsUnchanged)
{
    const wchar_t* const pointer = L"pointer";
    const wchar_t array[] = L"array";
    wchar_t buffer[10] = L"room";

    EXPECT_THAT(Insert(TString<wchar_t>(L"text \u20AC")), ElementsAre(L"text \u20AC"));
    EXPECT_THAT(Insert(std::wstring(L"a\0b", 3)), ElementsAre(std::wstring(L"a\0b", 3)));
    EXPECT_THAT(Insert(pointer), ElementsAre(L"pointer"));
    EXPECT_THAT(Insert(array), ElementsAre(L"array"));
    EXPECT_THAT(Insert(buffer), ElementsAre(L"room"));
    EXPECT_THAT(Insert(L""), ElementsAre(L""));
}

TEST(ILoggerTest, DecodesNarrowStrings)
{
    EXPECT_THAT(Insert(TString<char>("\xE2\x82\xAC")), ElementsAre(L"\u20AC"));
    EXPECT_THAT(Insert(TString<char>("\xE2\x82")), ElementsAre(L""));
}

TEST(ILoggerTest, WritesOnlyTheRangeOfAStringView)
{
    const std::wstring_view wide = std::wstring_view(L"<wide \u20AC>").substr(1, 6);
    const std::string_view narrow = std::string_view("<\xE2\x82\xAC>").substr(1, 3);

    EXPECT_THAT(Insert(wide), ElementsAre(L"wide \u20AC"));
    EXPECT_THAT(Insert(std::wstring_view(L"a\0b", 3)), ElementsAre(std::wstring(L"a\0b", 3)));
    EXPECT_THAT(Insert(narrow), ElementsAre(L"\u20AC"));
    EXPECT_THAT(Insert(narrow.substr(1)), ElementsAre(L""));
    EXPECT_THAT(Insert(std::string_view()), ElementsAre(L""));
}

TEST(ILoggerTest, AcceptsStandardStrings)
{
    EXPECT_THAT(Insert(std::wstring(L"wide")), ElementsAre(L"wide"));
    EXPECT_THAT(Insert(std::string("\xE2\x82\xAC")), ElementsAre(L"\u20AC"));
}

template <typename Value>
constexpr bool c_canBeInserted = requires(ILogger& logger, Value value)
{
    logger << value;
};

TEST(ILoggerTest, DoesNotCompileForPointersOtherThanStrings)
{
    EXPECT_FALSE(c_canBeInserted<void*>);
    EXPECT_FALSE(c_canBeInserted<const int*>);
    EXPECT_FALSE(c_canBeInserted<ILogger*>);
    EXPECT_FALSE(c_canBeInserted<const unsigned char*>);
    EXPECT_FALSE(c_canBeInserted<const char16_t*>);
    EXPECT_FALSE(c_canBeInserted<const char**>);
    EXPECT_FALSE(c_canBeInserted<volatile char*>);
    EXPECT_FALSE(c_canBeInserted<int (*)()>);
    EXPECT_FALSE(c_canBeInserted<int(&)[3]>);
    EXPECT_FALSE(c_canBeInserted<int (std::string::*)()>);
    EXPECT_TRUE(c_canBeInserted<char*>);
    EXPECT_TRUE(c_canBeInserted<const char*>);
    EXPECT_TRUE(c_canBeInserted<wchar_t*>);
    EXPECT_TRUE(c_canBeInserted<const wchar_t*>);
}

TEST(ILoggerTest, WidensNarrowArraysAndPointersByteByByte)
{
    const char* const pointer = "\xE2\x82";
    char buffer[10] = "room";

    EXPECT_THAT(Insert("\xE2\x82\xAC"), ElementsAre(L"\u00E2\u0082\u00AC"));
    EXPECT_THAT(Insert(pointer), ElementsAre(L"\u00E2\u0082"));
    EXPECT_THAT(Insert(buffer), ElementsAre(L"room"));
}

TEST(ILoggerTest, WritesNullPointersAsEmptyStrings)
{
    EXPECT_THAT(Insert(static_cast<const wchar_t*>(nullptr)), ElementsAre(L""));
    EXPECT_THAT(Insert(static_cast<const char*>(nullptr)), ElementsAre(L""));
}

TEST(ILoggerTest, CreatesANullLogger)
{
    EXPECT_TRUE(IsNullLogger(ILogger::Create()));
}

TEST(ILoggerTest, CreatesTheProcessLoggerOnce)
{
    ILogger::CreateInstance();
    const smart_ptr<ILogger> first = ILogger::GetInstance();
    ILogger::CreateInstance();

    EXPECT_TRUE(IsNullLogger(first));
    EXPECT_EQ(ILogger::GetInstance().Get(), first.Get());
    EXPECT_EQ(&ILogger::GetLogger(), first.Get());
    ILogger::ReleaseInstance();
    EXPECT_EQ(ILogger::s_pInstance, nullptr);
    EXPECT_FALSE(ILogger::GetInstance().IsValid());
}

TEST(ILoggerTest, KeepsAReferencedLoggerAfterTheRelease)
{
    ILogger::CreateInstance();
    ILogger::SetLogger(new Sink(SeverityVerbose));
    const smart_ptr<ILogger> copy = ILogger::GetInstance();

    ILogger::ReleaseInstance();
    *copy << L"text";
    EXPECT_THAT(dynamic_cast<Sink&>(*copy).pieces, ElementsAre(L"text"));
}

TEST(ILoggerTest, InstallsANullLoggerForAnEmptyPointer)
{
    ILogger::CreateInstance();
    ILogger::SetLogger(new Sink(SeverityVerbose));

    ILogger::SetLogger(smart_ptr<ILogger>());
    EXPECT_TRUE(IsNullLogger(ILogger::GetInstance()));
    ILogger::ReleaseInstance();
}

// Counts destructor calls.
class CountingLogger : public Sink {
public:
    explicit CountingLogger(int& destructions) : Sink(SeverityVerbose), m_destructions(destructions)
    {
    }
    ~CountingLogger() override { ++m_destructions; }

private:
    int& m_destructions;
};

TEST(ILoggerTest, ReleasesAReplacedLogger)
{
    int destructions = 0;
    ILogger::CreateInstance();

    ILogger::SetLogger(new CountingLogger(destructions));
    EXPECT_EQ(destructions, 0);
    ILogger::SetLogger(new CountingLogger(destructions));
    EXPECT_EQ(destructions, 1);
    ILogger::ReleaseInstance();
    EXPECT_EQ(destructions, 2);
}

TEST(ILoggerTest, ReleasesALoggerThatItCannotInstall)
{
    ASSERT_EQ(ILogger::s_pInstance, nullptr);

    int destructions = 0;
    ILogger::SetLogger(new CountingLogger(destructions));
    EXPECT_EQ(destructions, 1);
}

TEST(ILoggerTest, InstallsALoggerThatTheReplacedLoggerOwns)
{
    class Wrapper : public Sink {
    public:
        explicit Wrapper(ILogger* logger) : Sink(SeverityVerbose), wrapped(logger) {}
        const smart_ptr<ILogger> wrapped;
    };
    const CapturedLog log;
    Sink* const next = new Sink(SeverityVerbose);
    auto* const wrapper = new Wrapper(next);
    ILogger::SetLogger(wrapper);

    ILogger::SetLogger(wrapper->wrapped);
    ILogger::GetLogger() << L"text";

    EXPECT_EQ(&ILogger::GetLogger(), next);
    EXPECT_THAT(next->pieces, ElementsAre(L"text"));
}

TEST(ILoggerTest, IsUsableWithoutAProcessLogger)
{
    ASSERT_EQ(ILogger::s_pInstance, nullptr);

    ILogger::GetLogger() << SetSeverity(SeverityError) << L"nobody listens" << 1;
    ILogger::SetLogger(new Sink(SeverityVerbose));
    ILogger::ReleaseInstance();
    EXPECT_EQ(ILogger::s_pInstance, nullptr);
}

TEST(ILoggerTest, WritesThePiecesOfSeveralThreads)
{
    const CapturedLog log;

    const auto write = [] {
        for (int i = 0; i < 1000; ++i)
            ILogger::GetLogger() << SetSeverity(i % 2 ? SeverityError : SeverityDebug) << i;
    };
    std::thread first(write);
    std::thread second(write);
    first.join();
    second.join();

    EXPECT_EQ(log.Pieces().size(), 2000u);
}

} // namespace
} // namespace Toolkit
