// The texts of a snapshot's section, kept one after another in a few large
// blocks rather than in a string each: a section names thousands of things,
// and a string of its own for each name and value cost more than the rest of
// reading the section, and of letting it go. A text once kept stays where it
// is, unchanged, for as long as the store or a copy of it lives; a copy
// shares the blocks and keeps what is added to it in blocks of its own.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <vector>

class CTextStore {
public:
    CTextStore() = default;
    CTextStore(const CTextStore& other);
    CTextStore& operator=(const CTextStore& other);
    CTextStore(CTextStore&& other) noexcept;
    CTextStore& operator=(CTextStore&& other) noexcept;

    // The text, kept in the store.
    std::string_view Keep(std::string_view text);
    // The parts, one after another, kept as one text.
    std::string_view Join(std::initializer_list<std::string_view> parts);
    // The blocks that the store holds, its own and those it shares.
    std::size_t Blocks() const { return blocks_.size(); }

private:
    // A text longer than a quarter of a block gets a block of its own, so
    // that the room left in the current one is not lost.
    static constexpr std::size_t kBlockSize = 16 * 1024;

    char* Room(std::size_t size);

    std::vector<std::shared_ptr<char[]>> blocks_;
    // The room left in the last shared block; none in a copy, whose blocks
    // the original may still write behind.
    char* free_ = nullptr;
    std::size_t left_ = 0;
};
