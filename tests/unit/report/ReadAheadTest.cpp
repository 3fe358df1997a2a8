#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

#include "report/CReadAhead.h"

TEST(ReadAhead, ThingsArriveInTheOrderOfTheirMaking)
{
    CReadAhead<std::string> ahead(500, [](std::size_t index) { return std::to_string(index * 3); }, 2);
    for (std::size_t index = 0; index < 500; ++index)
        ASSERT_EQ(ahead.Next(), std::to_string(index * 3));
}

TEST(ReadAhead, TheMakerRunsNoFurtherAheadThanItsDepth)
{
    constexpr std::size_t kDepth = 3;
    std::atomic<std::size_t> started{0};
    CReadAhead<std::size_t> ahead(
        40, [&started](std::size_t index) {
            ++started;
            return index;
        },
        kDepth);
    for (std::size_t taken = 0; taken < 40; ++taken) {
        // Time for the maker to run as far ahead as it may.
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        // The things waiting, and one being made.
        EXPECT_LE(started.load(), taken + kDepth + 1);
        EXPECT_EQ(ahead.Next(), taken);
    }
}

TEST(ReadAhead, WhatMakingAThingThrewIsThrownWhereItIsTaken)
{
    CReadAhead<int> ahead(
        10, [](std::size_t index) {
            if (index == 3)
                throw std::runtime_error("the fourth can't be made");
            return static_cast<int>(index);
        },
        1);
    for (int index = 0; index < 3; ++index)
        EXPECT_EQ(ahead.Next(), index);
    try {
        ahead.Next();
        FAIL() << "the failure was not thrown";
    } catch (const std::runtime_error& failure) {
        EXPECT_STREQ(failure.what(), "the fourth can't be made");
    }
}

TEST(ReadAhead, ATakerThatStopsEarlyStopsTheMaker)
{
    std::atomic<std::size_t> started{0};
    {
        CReadAhead<std::size_t> ahead(
            1000000000, [&started](std::size_t index) {
                ++started;
                return index;
            },
            2);
        EXPECT_EQ(ahead.Next(), 0u);
        EXPECT_EQ(ahead.Next(), 1u);
    }
    EXPECT_LE(started.load(), 5u);
}

TEST(ReadAhead, NothingToMakeIsMadeAtOnce)
{
    std::atomic<std::size_t> started{0};
    {
        CReadAhead<int> ahead(
            0, [&started](std::size_t) {
                ++started;
                return 0;
            },
            2);
    }
    EXPECT_EQ(started.load(), 0u);
}
