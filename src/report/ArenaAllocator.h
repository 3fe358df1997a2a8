// An allocator that takes memory one piece after another from a few large
// blocks and gives none of it back until the last container that uses the
// blocks goes: a section's map names thousands of things, and an allocation of
// its own for each, and a free of each, cost more than the rest of reading the
// section and of letting it go. A map moved takes its blocks with it; a map
// copied gets blocks of its own. The blocks serve one thread at a time, as a
// section is read on one thread and only read after.
#pragma once

#include <cstddef>
#include <memory>
#include <memory_resource>
#include <type_traits>

template <typename T>
class ArenaAllocator {
public:
    using value_type = T;
    using propagate_on_container_copy_assignment = std::false_type;
    using propagate_on_container_move_assignment = std::true_type;
    using propagate_on_container_swap = std::true_type;

    ArenaAllocator() : blocks_(std::make_shared<std::pmr::monotonic_buffer_resource>()) {}
    // A move copies: the allocator moved from still takes from the blocks, as
    // a container moved from may still add to itself.
    ArenaAllocator(const ArenaAllocator&) noexcept = default;
    ArenaAllocator& operator=(const ArenaAllocator&) noexcept = default;
    template <typename U>
    ArenaAllocator(const ArenaAllocator<U>& other) noexcept : blocks_(other.blocks_)
    {
    }

    T* allocate(std::size_t count)
    {
        return static_cast<T*>(blocks_->allocate(count * sizeof(T), alignof(T)));
    }
    // Given back with the blocks.
    void deallocate(T*, std::size_t) noexcept {}

    // A copy of a container starts blocks of its own.
    ArenaAllocator select_on_container_copy_construction() const { return ArenaAllocator(); }

    template <typename U>
    bool operator==(const ArenaAllocator<U>& other) const noexcept
    {
        return blocks_ == other.blocks_;
    }
    template <typename U>
    bool operator!=(const ArenaAllocator<U>& other) const noexcept
    {
        return !(*this == other);
    }

private:
    template <typename U>
    friend class ArenaAllocator;

    std::shared_ptr<std::pmr::monotonic_buffer_resource> blocks_;
};
