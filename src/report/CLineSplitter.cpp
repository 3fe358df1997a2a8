#include "report/CLineSplitter.h"

#include <algorithm>
#include <utility>

CLineSplitter::CLineSplitter(LineHandler handler, std::size_t lineLimit)
    : handler_(std::move(handler)), lineLimit_(lineLimit)
{
}

void CLineSplitter::Feed(const char* bytes, std::size_t size)
{
    std::size_t start = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const char c = bytes[i];
        if (c != '\n' && c != '\r')
            continue;
        // The "\n" of a "\r\n" that was split between two blocks.
        if (c == '\n' && afterCarriageReturn_ && i == 0 && !lineOpen_) {
            afterCarriageReturn_ = false;
            start = 1;
            continue;
        }
        Append(bytes + start, i - start);
        EndLine();
        // A "\r" that ends the block may have its "\n" at the start of the next.
        const bool pair = c == '\r' && i + 1 < size && bytes[i + 1] == '\n';
        afterCarriageReturn_ = c == '\r' && !pair && i + 1 == size;
        if (pair)
            ++i;
        start = i + 1;
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
