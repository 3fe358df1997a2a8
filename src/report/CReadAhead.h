// Things made in their order on a thread of their own and taken in the same
// order on the caller's, at most a few ahead: the report reads the next
// events' logs on one core while it compares and writes out the event before
// them on the other. What is made ahead is held in memory, so the depth is
// small.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>

template <typename T>
class CReadAhead {
public:
    // Makes thing `index` with `make(index)`, for each index below `count`,
    // starting at once; at most `depth` made things wait to be taken.
    CReadAhead(std::size_t count, std::function<T(std::size_t)> make, std::size_t depth)
        : count_(count), depth_(depth == 0 ? 1 : depth), make_(std::move(make)),
          maker_([this] { MakeAll(); })
    {
    }

    // Stops the maker at its next thing and waits for it.
    ~CReadAhead()
    {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            stopped_ = true;
        }
        changed_.notify_all();
        maker_.join();
    }

    CReadAhead(const CReadAhead&) = delete;
    CReadAhead& operator=(const CReadAhead&) = delete;

    // The next thing, once it is made; what making it threw is thrown here.
    // At most `count` calls.
    T Next()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return !made_.empty() || failure_; });
        if (made_.empty())
            std::rethrow_exception(failure_);
        T next = std::move(made_.front());
        made_.pop_front();
        lock.unlock();
        changed_.notify_all();
        return next;
    }

private:
    void MakeAll()
    {
        try {
            for (std::size_t index = 0; index < count_ && WaitForRoom(); ++index) {
                T made = make_(index);
                const std::lock_guard<std::mutex> lock(mutex_);
                made_.push_back(std::move(made));
                changed_.notify_all();
            }
        } catch (...) {
            const std::lock_guard<std::mutex> lock(mutex_);
            failure_ = std::current_exception();
            changed_.notify_all();
        }
    }

    // False once the taker stopped.
    bool WaitForRoom()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        changed_.wait(lock, [this] { return made_.size() < depth_ || stopped_; });
        return !stopped_;
    }

    const std::size_t count_;
    const std::size_t depth_;
    const std::function<T(std::size_t)> make_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<T> made_;
    std::exception_ptr failure_;
    bool stopped_ = false;
    // Started last, once the rest is set.
    std::thread maker_;
};
