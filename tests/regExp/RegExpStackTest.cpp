#include "toolkit/regExp/RegExp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <pthread.h>
#include <string>
#include <sys/mman.h>
#include <ucontext.h>

#include "regExp/CaughtException.h"
#include "regExp/Engine.h"

namespace Toolkit {
namespace {

using TestSupport::c_usesPcre2;
using TestSupport::CaughtMessage;

// PCRE 1 recurses on the stack and gives up. PCRE 2 does not recurse, and finds no match here.
constexpr const char* c_deepRecursionMessage =
    c_usesPcre2 ? "nothing thrown" : "-21Exp::Match return error: ";

// At least the size of a page on every common system.
constexpr std::size_t c_guardSize = std::size_t{64} * 1024;

// Memory for a stack above a guard area that faults.
class StackMemory {
public:
    explicit StackMemory(std::size_t size)
        : m_size(size), m_memory(static_cast<char*>(mmap(nullptr, size + c_guardSize, PROT_NONE,
                                                         MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)))
    {
        mprotect(Begin(), size, PROT_READ | PROT_WRITE);
    }
    ~StackMemory() { munmap(m_memory, m_size + c_guardSize); }

    StackMemory(const StackMemory&) = delete;
    StackMemory& operator=(const StackMemory&) = delete;

    char* Begin() const { return m_memory + c_guardSize; }

private:
    std::size_t m_size;
    char* m_memory;
};

// Runs `work` on a thread with a stack of `stackSize` bytes, and waits for it.
void RunWithStack(std::size_t stackSize, std::function<void()> work)
{
    // Provides the memory, because the system may provide a larger stack than requested.
    const StackMemory stack(stackSize);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, stack.Begin(), stackSize);
    pthread_t thread;
    const auto entry = [](void* function) -> void* {
        (*static_cast<std::function<void()>*>(function))();
        return nullptr;
    };
    const int error = pthread_create(&thread, &attributes, entry, &work);
    pthread_attr_destroy(&attributes);
    ASSERT_EQ(error, 0);
    pthread_join(thread, nullptr);
}

// Returns the message of what `operation` throws on a thread with a stack of `stackSize` bytes.
TString<char> MessageWithStack(std::size_t stackSize, const std::function<void()>& operation)
{
    TString<char> message;
    RunWithStack(stackSize, [&] { message = CaughtMessage(operation); });
    return message;
}

constexpr std::size_t c_kilobyte = 1024;

TString<char> CreateNestedGroups(int depth)
{
    return std::string(static_cast<std::size_t>(depth), '(') + "a" +
           std::string(static_cast<std::size_t>(depth), ')');
}

TEST(RegExpStackTest, SurvivesDeepRecursionOnASmallStack)
{
    const RegExp regExp(TString<char>("(a|b)*c"), RegExpOptions::None);
    for (const std::size_t length : {1000u, 5000u, 20000u, 1000000u}) {
        SCOPED_TRACE(length);
        const TString<char> subject(std::string(length, 'a'));
        EXPECT_EQ(MessageWithStack(256 * c_kilobyte, [&] { regExp.IsMatch(subject); }),
                  c_deepRecursionMessage);
    }
}

TEST(RegExpStackTest, SurvivesDeepRecursionOnTheMainThread)
{
    const RegExp regExp(TString<char>("(a|b)*c"), RegExpOptions::None);

    EXPECT_EQ(CaughtMessage([&] { regExp.IsMatch(std::string(1000000, 'a')); }),
              c_deepRecursionMessage);
}

TEST(RegExpStackTest, BoundsSeveralKindsOfRecursion)
{
    const TString<char> subject(std::string(50000, 'a') + std::string(50000, 'b'));
    for (const char* pattern : {"((a)|(b))*?c", "(a(?1)?b)c", "(?i)(a|b|\xC3\xA9)*c", "(.)*c",
                                "(?:(a|b)(?=.))*c", "(\\X)*c", "(?:a|b(?!c))*c"}) {
        SCOPED_TRACE(pattern);
        const RegExp regExp(TString<char>(pattern), RegExpOptions::None);
        EXPECT_EQ(MessageWithStack(256 * c_kilobyte, [&] { regExp.Match(subject); }),
                  c_deepRecursionMessage);
    }
}

TEST(RegExpStackTest, BoundsRecursionInReplace)
{
    RegExp regExp(TString<char>("(a|b)*c"), RegExpOptions::None);
    const TString<char> subject(std::string(50000, 'a'));

    EXPECT_EQ(MessageWithStack(256 * c_kilobyte, [&] { regExp.Replace("x", subject, 0); }),
              c_deepRecursionMessage);
}

TEST(RegExpStackTest, MatchesAHundredRepetitionsOnASmallStack)
{
    const RegExp regExp(TString<char>("(a|b)*c"), RegExpOptions::None);
    const TString<char> subject(std::string(100, 'a') + "c");

    bool isMatch = false;
    RunWithStack(256 * c_kilobyte, [&] { isMatch = regExp.IsMatch(subject); });
    EXPECT_TRUE(isMatch);
}

TEST(RegExpStackTest, MatchesManyRepetitionsOnALargeStack)
{
    const RegExp regExp(TString<char>("(a|b)*c"), RegExpOptions::None);
    const TString<char> subject(std::string(20000, 'a') + "c");

    bool isMatch = false;
    RunWithStack(32 * c_kilobyte * c_kilobyte, [&] { isMatch = regExp.IsMatch(subject); });
    EXPECT_TRUE(isMatch);
}

TEST(RegExpStackTest, CompilesTheDeepestNestingOnASmallStack)
{
    constexpr int nestingLimit = 250; // the default of both engines
    const RegExp regExp(CreateNestedGroups(nestingLimit), RegExpOptions::None);

    EXPECT_EQ(MessageWithStack(256 * c_kilobyte, [&] { regExp.IsMatch("a"); }), "nothing thrown");
}

TEST(RegExpStackTest, ThrowsWhenNestingNeedsTooMuchStack)
{
    const RegExp regExp(CreateNestedGroups(200), RegExpOptions::None);

    EXPECT_THAT(MessageWithStack(96 * c_kilobyte, [&] { regExp.IsMatch("a"); }),
                testing::StartsWith(" : parentheses are too deeply nested (stack check) "));
}

TEST(RegExpStackTest, SearchesPlainPatternsOnAVerySmallStack)
{
    const RegExp regExp(TString<char>("(\\w+)@(\\w+)"), RegExpOptions::None);

    bool isMatch = false;
    RunWithStack(64 * c_kilobyte, [&] { isMatch = regExp.IsMatch("ann@home"); });
    EXPECT_TRUE(isMatch);
}

TEST(RegExpStackTest, CompilesManySequentialGroupsOnAVerySmallStack)
{
    TString<char> pattern;
    for (int i = 0; i < 200; ++i)
        pattern += "(?:[a-z])";
    const RegExp regExp(pattern, RegExpOptions::None);

    EXPECT_EQ(MessageWithStack(64 * c_kilobyte, [&] { regExp.IsMatch("a"); }), "nothing thrown");
}

TEST(RegExpStackTest, CompilesManyOptionalGroupsOnASmallStack)
{
    TString<char> pattern = "zx?";
    for (int i = 0; i < 1000; ++i)
        pattern += "(?:a)?";
    const RegExp regExp(pattern, RegExpOptions::None);

    for (const std::size_t size : {64U, 96U, 128U, 160U, 192U, 256U}) {
        EXPECT_EQ(MessageWithStack(size * c_kilobyte, [&] { regExp.IsMatch("a"); }),
                  "nothing thrown");
    }
}

TEST(RegExpStackTest, SearchesALargeSubjectOnASmallStack)
{
    const RegExp regExp(TString<char>("[a-z]+(\\d)"), RegExpOptions::None);
    const TString<char> subject(std::string(20'000'000, '.') + "abc1");

    TString<char> value;
    RunWithStack(256 * c_kilobyte, [&] { value = (*regExp.Match(subject))[0]->value; });
    EXPECT_EQ(value, "abc1");
}

#ifdef __GLIBC__
// Runs `work` on a stack that is unknown to the system, like that of a coroutine.
void RunInCoroutine(std::size_t stackSize, std::function<void()> work)
{
    static std::function<void()>* s_work = nullptr;
    const StackMemory stack(stackSize);
    ucontext_t caller;
    ucontext_t coroutine;
    getcontext(&coroutine);
    coroutine.uc_stack.ss_sp = stack.Begin();
    coroutine.uc_stack.ss_size = stackSize;
    coroutine.uc_link = &caller;
    s_work = &work;
    makecontext(
        &coroutine, [] { (*s_work)(); }, 0);
    swapcontext(&caller, &coroutine);
}

TEST(RegExpStackTest, MatchesManyRepetitionsInACoroutine)
{
    const RegExp regExp(TString<char>("(a|b)*c"), RegExpOptions::None);
    const TString<char> subject(std::string(5000, 'a') + "c");

    bool isMatch = false;
    RunInCoroutine(64 * c_kilobyte, [&] { isMatch = regExp.IsMatch(subject); });
    EXPECT_TRUE(isMatch);
}

TEST(RegExpStackTest, CompilesDeepNestingInACoroutine)
{
    const RegExp regExp(CreateNestedGroups(240), RegExpOptions::None);

    TString<char> message;
    RunInCoroutine(64 * c_kilobyte, [&] { message = CaughtMessage([&] { regExp.IsMatch("a"); }); });
    EXPECT_EQ(message, "nothing thrown");
}

TEST(RegExpStackTest, CompilesManyOptionalGroupsInACoroutine)
{
    TString<char> pattern = "zx?";
    for (int i = 0; i < 400; ++i)
        pattern += "(?:a)?";
    const RegExp regExp(pattern, RegExpOptions::None);

    TString<char> message;
    RunInCoroutine(64 * c_kilobyte, [&] { message = CaughtMessage([&] { regExp.IsMatch("a"); }); });
    EXPECT_EQ(message, "nothing thrown");
}
#endif

} // namespace
} // namespace Toolkit
