// Reads a zip archive whose central directory is missing or damaged, such as
// an archive cut off while it was written or copied, by the local header that
// stands before each entry's data, from the start of the file on. Each entry
// is found where its header says; one whose data runs past the end of the
// file is cut off, and what stands of it can still be read. The walk ends at
// the first place that holds no local header (the central directory of a
// whole archive, or damage), or at an entry whose size its header doesn't
// give (its data is followed by a descriptor), since where that one ends
// can't be told without its directory.
#pragma once

#include <cstdint>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

class CLocalHeaderReader {
public:
    using BlockHandler = std::function<void(const char* bytes, std::size_t size)>;

    // False if the file doesn't begin with a local header.
    bool Open(const std::string& path);
    bool Contains(const std::string& lookupName) const;
    // As CArchiveReader::Stream: false for an entry that is missing, cut off,
    // damaged or of a method other than stored or deflated.
    bool Stream(const std::string& lookupName, std::uint64_t limit, const BlockHandler& handler) const;
    // The bytes that the entry's header says it holds; none for a missing
    // entry.
    std::optional<std::uint64_t> DeclaredSize(const std::string& lookupName) const;

    // The entries, by their names as stored, whose data is cut off by the end
    // of the file, and the place where the walk met what it couldn't read.
    const std::vector<std::string>& CutOffEntries() const { return cutOff_; }
    // Empty if the walk ended at a central directory.
    const std::string& WalkEnd() const { return walkEnd_; }
    // The names of the entries that are files, as stored, in their order.
    const std::vector<std::string>& FileNames() const { return fileNames_; }

private:
    struct Entry {
        std::uint64_t dataOffset = 0;
        std::uint64_t compressedSize = 0;
        std::uint64_t size = 0;
        std::uint32_t crc = 0;
        std::uint16_t method = 0;
        bool cutOff = false;
    };

    bool ReadEntryAt(std::uint64_t& offset);
    bool ReadBytes(std::uint64_t offset, char* bytes, std::size_t size) const;

    mutable std::filebuf file_;
    std::uint64_t fileSize_ = 0;
    std::unordered_map<std::string, Entry> entries_;
    std::vector<std::string> cutOff_;
    std::vector<std::string> fileNames_;
    std::string walkEnd_;
};
