// One entry of an archive on its way in: its name and header fields, the file
// whose data it holds (none for a folder's entry), and the deflate state and
// buffers that turn that file into the entry's compressed data. A slot is made
// once and serves one entry after another, so that packing a file allocates
// nothing: zlib's state is reset, not made anew, and the buffers stay.
//
// The data is raw deflate with the parameters that minizip's own entries use
// (the default level, windowBits -15, memLevel 8, the default strategy), fed
// the same blocks of the file, so the bytes are those that minizip would
// write for the entry itself.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/FileSystem.h"
#include "zip.h"

// Files are read this many bytes at a time: few enough calls that the system's
// share of an archive run stays small, and a fixed amount of memory whatever
// the size of the file. The compressed bytes don't depend on it: deflate gives
// the same stream however its input is cut.
constexpr std::uint32_t kCopyBlockSize = 64 * 1024;

class PendingEntry {
public:
    PendingEntry();
    ~PendingEntry();
    PendingEntry(const PendingEntry&) = delete;
    PendingEntry& operator=(const PendingEntry&) = delete;

    // Starts the slot on a new entry; a file entry's file is opened through
    // File() before, and stays open until End.
    void Begin(const char* entryName, const zip_fileinfo& fileInfo, bool isFile);
    platform::ExclusiveReadFile& File() { return file; }

    // Reads and deflates until the output buffer is full or the data has ended.
    void DeflateSome();
    bool Finished() const { return finished; }
    // Whether the state or the deflate failed; the data stops where it did.
    bool Failed() const { return failed; }

    // The compressed bytes waiting to be written, and their hand-over.
    const unsigned char* Output() const { return output.get(); }
    std::uint32_t OutputSize() const { return outputSize; }
    void OutputWritten() { outputSize = 0; }

    const char* Name() const { return name.c_str(); }
    bool IsFileEntry() const { return fileEntry; }
    // The header fields; the internal attributes say "text" as minizip sets
    // them from zlib's guess, which zlib makes with the first block of output.
    zip_fileinfo HeaderInfo() const;
    std::uint32_t Crc() const { return crc; }
    std::uint64_t BytesRead() const { return bytesRead; }

    // Ends the entry: its file is closed.
    void End() { file.Close(); }

private:
    void ReadBlock();

    std::string name;
    zip_fileinfo info;
    bool fileEntry = false;
    platform::ExclusiveReadFile file;
    z_stream stream;
    bool streamReady = false;
    std::unique_ptr<unsigned char[]> input;
    std::unique_ptr<unsigned char[]> output;
    std::uint32_t outputSize = 0;
    bool inputEnded = false;
    bool finished = false;
    bool failed = false;
    std::uint32_t crc = 0;
    std::uint64_t bytesRead = 0;
};
