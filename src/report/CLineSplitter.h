// Cuts a stream of bytes, handed over in blocks of any size, into the lines of
// a text file: "\n", "\r\n" and a lone "\r" end a line, and the last line needs
// no end. A line longer than the limit is kept up to the limit and the rest of
// it is dropped, so that no input, however long its lines, grows the memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

class CLineSplitter {
public:
    using LineHandler = std::function<void(const std::string& line)>;

    static constexpr std::size_t kDefaultLineLimit = 256 * 1024;

    explicit CLineSplitter(LineHandler handler, std::size_t lineLimit = kDefaultLineLimit);

    void Feed(const char* bytes, std::size_t size);
    // Hands over the last line if the input didn't end with a line end.
    void Finish();

    // How many lines were cut at the limit.
    std::size_t CutLines() const { return cutLines_; }
    // While the handler runs: how many bytes of its line were dropped at the
    // limit, so that the reader can say how much of a message is missing.
    std::uint64_t BytesCutOfLine() const { return lineBytesCut_; }

private:
    void Append(const char* bytes, std::size_t size);
    void EndLine();

    LineHandler handler_;
    std::size_t lineLimit_;
    std::string line_;
    std::uint64_t lineBytesCut_ = 0;
    bool afterCarriageReturn_ = false;
    bool lineOpen_ = false;
    std::size_t cutLines_ = 0;
};
