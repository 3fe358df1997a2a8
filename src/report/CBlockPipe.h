// Blocks made on a thread of their own and used on the caller's, in their
// order, a few blocks apart: an archive's large entries are inflated on one
// core while their lines are read on the other.
#pragma once

#include <cstddef>
#include <functional>

class CBlockPipe {
public:
    // Fills the block (at most `capacity` bytes): the bytes it put there, 0 at
    // the end, below 0 on failure.
    using Producer = std::function<int(char* block, std::size_t capacity)>;
    // Takes a block's bytes; false once it wants no more.
    using Consumer = std::function<bool(const char* bytes, std::size_t size)>;

    // How many blocks the producer may run ahead of the consumer.
    static constexpr std::size_t kDepth = 4;

    // Runs `produce` on a thread of its own until it returns 0 or less, or the
    // consumer wants no more, and hands each block to `consume` on this
    // thread. The producer's last result.
    static int Run(std::size_t blockSize, const Producer& produce, const Consumer& consume);
};
