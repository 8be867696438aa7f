// Runs operations while each of their allocations fails in turn.

#include "toolkit/regExp/RegExp.h"

#include "support/OutOfMemory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <string>
#include <vector>

#include "regExp/CaughtException.h"

namespace Toolkit {
namespace {

using TestSupport::CaughtMessage;

constexpr const char* c_outOfMemory = "-6gExp::Match return error: ";

// Strings too long for the small-string buffer.
const TString<char> c_pattern("(?<first_of_the_names>a+)(?<second_of_the_names>b+)");
const TString<char> c_subject(std::string(50, 'a') + std::string(50, 'b'));

// Makes each allocation of `operation` fail in turn. Returns the number of allocations.
int FailEachAllocation(const std::function<void()>& operation)
{
    for (int index = 0;; ++index) {
        SCOPED_TRACE(index);
        bool hasFailed = false;
        const TString<char> message = CaughtMessage([&] {
            const TestSupport::FailingAllocation failing(index);
            const auto recordFailure = [&] { hasFailed = failing.HasFailed(); };
            try {
                operation();
            } catch (...) {
                recordFailure();
                throw;
            }
            recordFailure();
        });
        if (!hasFailed)
            return index;
        EXPECT_EQ(message, c_outOfMemory);
    }
}

TEST(RegExpMemoryTest, ReportsOutOfMemoryFromEveryOperation)
{
    RegExp regExp(c_pattern, RegExpOptions::None);
    const TString<wchar_t> wide(std::wstring(100, L'a'));
    const std::vector<TString<char>> list = {c_subject, c_subject};
    const std::function<void()> operations[] = {[&] { RegExp(c_pattern, RegExpOptions::None); },
                                                [&] { RegExp(wide, RegExpOptions::None); },
                                                [&] { regExp.IsMatch(wide); },
                                                [&] { regExp.Match(c_subject); },
                                                [&] { regExp.Replace(c_subject, c_subject, 0); },
                                                [&] { regExp.Replace(list, c_subject); },
                                                [&] {
                                                    RegExp::ReplacementMappedStrings map;
                                                    regExp.Replace(map, c_subject);
                                                }};
    for (const auto& operation : operations)
        EXPECT_GT(FailEachAllocation(operation), 0);
}

TEST(RegExpMemoryTest, WorksAgainAfterRunningOutOfMemory)
{
    const RegExp regExp(c_pattern, RegExpOptions::None);

    FailEachAllocation([&] { regExp.Match(c_subject); });

    EXPECT_EQ(regExp.Match(c_subject)->Count(), 3u);
}

// The library constructs this exception at load, before memory runs out.
TEST(RegExpMemoryTest, ThrowsItsOwnExceptionWhenOutOfMemory)
{
    const RegExp regExp(c_pattern, RegExpOptions::None);
    const auto match = [&] {
        const TestSupport::AllocationLimit limit(0);
        regExp.Match(c_subject);
    };

    EXPECT_THROW(match(), smart_ptr<RegExpException>);
}

TEST(RegExpMemoryTest, LeavesACollectionUnchangedWhenOutOfMemory)
{
    GroupCollection groups;
    groups.Add(smart_ptr<Group>(new Group("value", 0)));
    const TString<char> name = c_subject;
    const smart_ptr<Group> group(new Group("other", 1));

    const auto add = [&] {
        const TestSupport::AllocationLimit limit(0);
        groups.Add(group);
    };
    const auto addName = [&] {
        const TestSupport::AllocationLimit limit(0);
        groups.AddNamedGroupKey(name, 0);
    };

    EXPECT_THROW(add(), std::bad_alloc);
    EXPECT_EQ(groups.Count(), 1u);
    EXPECT_THROW(addName(), std::bad_alloc);
    EXPECT_TRUE(groups.names.empty());
    EXPECT_EQ(groups[0]->name, "");
}

} // namespace
} // namespace Toolkit
