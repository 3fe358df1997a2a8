#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "platform/Process.h"

namespace {

bool EndsNeitherWithZeroNorOne(int status)
{
    return !::testing::ExitedWithCode(0)(status) && !::testing::ExitedWithCode(1)(status);
}

void TellExitHandlerRan()
{
    std::fputs("exit handler ran", stderr);
}

}  // namespace

TEST(StopOnInvalidParameter, EndsAtOnceWithoutMessageOrExitHandlers)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            std::atexit(TellExitHandlerRan);
            platform::StopOnInvalidParameter();
        },
        EndsNeitherWithZeroNorOne, "^$");
}
