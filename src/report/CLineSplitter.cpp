#include "report/CLineSplitter.h"

#include <algorithm>
#include <cstring>
#include <utility>

CLineSplitter::CLineSplitter(LineHandler handler, std::size_t lineLimit)
    : handler_(std::move(handler)), lineLimit_(lineLimit)
{
}

namespace {

// Where the first line end ("\r" or "\n") at or after `from` stands, or `size`.
std::size_t NextLineEnd(const char* bytes, std::size_t from, std::size_t size)
{
    const void* newline = std::memchr(bytes + from, '\n', size - from);
    const std::size_t limit = newline == nullptr ? size : static_cast<std::size_t>(static_cast<const char*>(newline) - bytes);
    const void* carriageReturn = std::memchr(bytes + from, '\r', limit - from);
    return carriageReturn == nullptr ? limit
                                     : static_cast<std::size_t>(static_cast<const char*>(carriageReturn) - bytes);
}

}  // namespace

void CLineSplitter::Feed(const char* bytes, std::size_t size)
{
    std::size_t start = 0;
    // The "\n" of a "\r\n" that was split between two blocks.
    if (size != 0 && bytes[0] == '\n' && afterCarriageReturn_ && !lineOpen_) {
        afterCarriageReturn_ = false;
        start = 1;
    }
    for (std::size_t end; start < size && (end = NextLineEnd(bytes, start, size)) < size;) {
        Append(bytes + start, end - start);
        EndLine();
        // A "\r" that ends the block may have its "\n" at the start of the next.
        const bool pair = bytes[end] == '\r' && end + 1 < size && bytes[end + 1] == '\n';
        afterCarriageReturn_ = bytes[end] == '\r' && !pair && end + 1 == size;
        start = end + (pair ? 2 : 1);
    }
    if (start < size) {
        Append(bytes + start, size - start);
        lineOpen_ = true;
        afterCarriageReturn_ = false;
    }
}

void CLineSplitter::Finish()
{
    if (lineOpen_)
        EndLine();
}

// Keeps what fits within the limit and counts the rest.
void CLineSplitter::Append(const char* bytes, std::size_t size)
{
    const std::size_t taken = std::min(size, lineLimit_ - std::min(line_.size(), lineLimit_));
    line_.append(bytes, taken);
    lineBytesCut_ += size - taken;
}

void CLineSplitter::EndLine()
{
    if (lineBytesCut_ != 0)
        ++cutLines_;
    handler_(line_);
    line_.clear();
    lineBytesCut_ = 0;
    lineOpen_ = false;
}
