#include "report/CBlockPipe.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace {

// The blocks and who may use which: the producer fills them in turn, the
// consumer takes them in the same turn, and a block goes back to the producer
// once it is used.
class BlockRing {
public:
    explicit BlockRing(std::size_t blockSize) : blocks_(CBlockPipe::kDepth, std::vector<char>(blockSize)) {}

    void Produce(const CBlockPipe::Producer& produce)
    {
        for (std::size_t next = 0;; next = (next + 1) % blocks_.size()) {
            if (!TakeFreeBlock())
                return;
            const int result = produce(blocks_[next].data(), blocks_[next].size());
            {
                const std::lock_guard<std::mutex> lock(mutex_);
                filled_.emplace_back(next, result);
            }
            changed_.notify_all();
            if (result <= 0)
                return;
        }
    }

    int Consume(const CBlockPipe::Consumer& consume)
    {
        for (;;) {
            const std::pair<std::size_t, int> block = TakeFilledBlock();
            const bool more = block.second > 0 && consume(blocks_[block.first].data(),
                                                          static_cast<std::size_t>(block.second));
            GiveBack(!more);
            if (!more)
                return block.second;
        }
    }

    // The producer stops at its next block.
    void Stop() { GiveBack(true); }

private:
    bool TakeFreeBlock()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return free_ > 0 || stopped_; });
        if (stopped_)
            return false;
        --free_;
        return true;
    }

    std::pair<std::size_t, int> TakeFilledBlock()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return !filled_.empty(); });
        const std::pair<std::size_t, int> block = filled_.front();
        filled_.pop_front();
        return block;
    }

    void GiveBack(bool stop)
    {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            ++free_;
            stopped_ = stopped_ || stop;
        }
        changed_.notify_all();
    }

    std::vector<std::vector<char>> blocks_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::pair<std::size_t, int>> filled_;
    std::size_t free_ = CBlockPipe::kDepth;
    bool stopped_ = false;
};

}  // namespace

int CBlockPipe::Run(std::size_t blockSize, const Producer& produce, const Consumer& consume)
{
    BlockRing ring(blockSize);
    std::thread producer([&ring, &produce] { ring.Produce(produce); });
    try {
        const int last = ring.Consume(consume);
        producer.join();
        return last;
    } catch (...) {
        ring.Stop();
        producer.join();
        throw;
    }
}
