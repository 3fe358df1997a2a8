#include "report/CTextStore.h"

#include <cstring>
#include <utility>

CTextStore::CTextStore(const CTextStore& other) : blocks_(other.blocks_) {}

CTextStore& CTextStore::operator=(const CTextStore& other)
{
    if (this != &other) {
        blocks_ = other.blocks_;
        free_ = nullptr;
        left_ = 0;
    }
    return *this;
}

CTextStore::CTextStore(CTextStore&& other) noexcept
    : blocks_(std::move(other.blocks_)), free_(std::exchange(other.free_, nullptr)),
      left_(std::exchange(other.left_, 0))
{
}

CTextStore& CTextStore::operator=(CTextStore&& other) noexcept
{
    if (this != &other) {
        blocks_ = std::move(other.blocks_);
        free_ = std::exchange(other.free_, nullptr);
        left_ = std::exchange(other.left_, 0);
    }
    return *this;
}

std::string_view CTextStore::Keep(std::string_view text)
{
    return Join({text});
}

std::string_view CTextStore::Join(std::initializer_list<std::string_view> parts)
{
    std::size_t size = 0;
    for (const std::string_view part : parts)
        size += part.size();
    if (size == 0)
        return std::string_view();
    char* const text = Room(size);
    std::size_t at = 0;
    for (const std::string_view part : parts) {
        if (!part.empty())
            std::memcpy(text + at, part.data(), part.size());
        at += part.size();
    }
    return std::string_view(text, size);
}

char* CTextStore::Room(std::size_t size)
{
    if (size > left_) {
        const bool ownBlock = size > kBlockSize / 4;
        blocks_.emplace_back(new char[ownBlock ? size : kBlockSize]);
        if (ownBlock)
            return blocks_.back().get();
        free_ = blocks_.back().get();
        left_ = kBlockSize;
    }
    char* const room = free_;
    free_ += size;
    left_ -= size;
    return room;
}
