#include <gtest/gtest.h>

#include <atomic>
#include <cstring>
#include <stdexcept>
#include <string>

#include "report/CBlockPipe.h"

namespace {

// A producer that hands out `text` in blocks of at most `capacity` bytes,
// counting its calls, then `end`.
struct TextProducer {
    std::string text;
    int end = 0;
    std::size_t at = 0;
    std::atomic<int> calls{0};

    int operator()(char* block, std::size_t capacity)
    {
        ++calls;
        const std::size_t size = std::min(capacity, text.size() - at);
        if (size == 0)
            return end;
        std::memcpy(block, text.data() + at, size);
        at += size;
        return static_cast<int>(size);
    }
};

std::string Alphabet(std::size_t size)
{
    std::string text;
    for (std::size_t i = 0; i < size; ++i)
        text += static_cast<char>('a' + i % 26);
    return text;
}

}  // namespace

TEST(BlockPipe, EveryBlockArrivesWholeAndInOrder)
{
    TextProducer producer{Alphabet(100003)};
    std::string received;
    const int last = CBlockPipe::Run(
        7, [&producer](char* block, std::size_t capacity) { return producer(block, capacity); },
        [&received](const char* bytes, std::size_t size) {
            received.append(bytes, size);
            return true;
        });
    EXPECT_EQ(received, producer.text);
    EXPECT_EQ(last, 0);
}

TEST(BlockPipe, AFailureOfTheProducerIsItsLastResult)
{
    TextProducer producer{Alphabet(50), -3};
    std::string received;
    const int last = CBlockPipe::Run(
        16, [&producer](char* block, std::size_t capacity) { return producer(block, capacity); },
        [&received](const char* bytes, std::size_t size) {
            received.append(bytes, size);
            return true;
        });
    EXPECT_EQ(received, producer.text);
    EXPECT_EQ(last, -3);
}

TEST(BlockPipe, AConsumerThatWantsNoMoreStopsTheProducerWithinTheDepth)
{
    TextProducer producer{Alphabet(1000000)};
    std::size_t blocks = 0;
    const int last = CBlockPipe::Run(
        10, [&producer](char* block, std::size_t capacity) { return producer(block, capacity); },
        [&blocks](const char*, std::size_t) { return ++blocks < 3; });
    EXPECT_EQ(blocks, 3u);
    EXPECT_EQ(last, 10);
    EXPECT_LE(producer.calls.load(), static_cast<int>(3 + CBlockPipe::kDepth));
}

TEST(BlockPipe, AnExceptionOfTheConsumerReachesTheCallerAndEndsTheProducer)
{
    TextProducer producer{Alphabet(1000000)};
    EXPECT_THROW(CBlockPipe::Run(
                     10, [&producer](char* block, std::size_t capacity) { return producer(block, capacity); },
                     [](const char*, std::size_t) -> bool { throw std::runtime_error("out of memory"); }),
                 std::runtime_error);
    EXPECT_LE(producer.calls.load(), static_cast<int>(1 + CBlockPipe::kDepth));
}
