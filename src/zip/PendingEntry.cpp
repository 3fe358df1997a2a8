#include "zip/PendingEntry.h"

#include <cstring>

namespace {

// The compressed bytes that a slot holds before they are written: enough for
// the whole of any file that the deflating threads take (text deflates to a
// tenth or so), and a fixed bound on the memory of the entries in flight. What
// doesn't fit is written in pieces of this size.
constexpr std::uint32_t kOutputBufferSize = 1024 * 1024;

// minizip's parameters for its own deflated entries.
constexpr int kWindowBits = -MAX_WBITS;
constexpr int kMemoryLevel = 8;

}  // namespace

PendingEntry::PendingEntry()
    : info(), input(new unsigned char[kCopyBlockSize]), output(new unsigned char[kOutputBufferSize])
{
    std::memset(&stream, 0, sizeof stream);
    streamReady = deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kWindowBits, kMemoryLevel,
                               Z_DEFAULT_STRATEGY) == Z_OK;
}

PendingEntry::~PendingEntry()
{
    if (streamReady)
        deflateEnd(&stream);
}

void PendingEntry::Begin(const char* entryName, const zip_fileinfo& fileInfo, bool isFile)
{
    name = entryName;
    info = fileInfo;
    fileEntry = isFile;
    failed = !streamReady || deflateReset(&stream) != Z_OK;
    finished = failed;
    stream.next_in = nullptr;
    stream.avail_in = 0;
    outputSize = 0;
    inputEnded = !isFile;
    crc = static_cast<std::uint32_t>(crc32(0, nullptr, 0));
    bytesRead = 0;
}

// A failed read ends the data as the end of the file does: what was read
// stands as the entry.
void PendingEntry::ReadBlock()
{
    std::uint32_t got = 0;
    if (!file.Read(input.get(), kCopyBlockSize, got) || got == 0) {
        inputEnded = true;
        file.Close();
        return;
    }
    crc = static_cast<std::uint32_t>(crc32(crc, input.get(), got));
    bytesRead += got;
    stream.next_in = input.get();
    stream.avail_in = got;
}

// Input is deflated without a flush as it comes, and finished once the file
// has ended, as minizip does with the blocks that it is given.
void PendingEntry::DeflateSome()
{
    stream.next_out = output.get() + outputSize;
    stream.avail_out = kOutputBufferSize - outputSize;
    while (!finished && stream.avail_out > 0) {
        if (stream.avail_in == 0 && !inputEnded)
            ReadBlock();
        const int result = deflate(&stream, inputEnded ? Z_FINISH : Z_NO_FLUSH);
        if (result == Z_STREAM_END) {
            finished = true;
        } else if (result != Z_OK) {
            finished = true;
            failed = true;
        }
    }
    outputSize = kOutputBufferSize - stream.avail_out;
}

zip_fileinfo PendingEntry::HeaderInfo() const
{
    zip_fileinfo header = info;
    header.internal_fa = stream.data_type == Z_TEXT ? Z_TEXT : 0;
    return header;
}
