#include "toolkit/logging/NullLogger.h"

#include <gtest/gtest.h>

#include "logging/WideOutput.h"

namespace Toolkit {
namespace {

TEST(NullLoggerTest, WritesNothing)
{
    const TestSupport::CapturedWideOutput output;
    testing::internal::CaptureStderr();
    NullLogger logger;

    logger.Write(L"text");
    logger << SetSeverity(SeverityError);
    logger << L"text";
    EXPECT_EQ(output.Text(), L"");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace Toolkit
