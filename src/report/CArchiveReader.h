// Reads a zip archive in place through minizip's reader: one pass over the
// central directory makes an index of the entries by their looked-up names,
// and a file is then inflated block by block, straight to the caller. Nothing
// is unpacked to disk.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

class CArchiveReader {
public:
    using BlockHandler = std::function<void(const char* bytes, std::size_t size)>;

    CArchiveReader() = default;
    ~CArchiveReader();
    CArchiveReader(const CArchiveReader&) = delete;
    CArchiveReader& operator=(const CArchiveReader&) = delete;

    // False if the file isn't a zip archive that minizip can read, or its
    // central directory can't be read to its end.
    bool Open(const std::string& path);
    bool Contains(const std::string& lookupName) const;
    // The names of the file entries, as stored, the first of each name.
    const std::vector<std::string>& FileNames() const { return fileNames_; }
    // Hands over the entry's bytes, at most `limit` of them. False if the
    // entry is missing or damaged; what was handed over by then stands.
    bool Stream(const std::string& lookupName, std::uint64_t limit, const BlockHandler& handler) const;

private:
    struct Position {
        std::uint64_t directoryOffset;
        std::uint64_t fileNumber;
    };

    bool IndexEntries();

    void* archive_ = nullptr;
    std::unordered_map<std::string, Position> entries_;
    std::vector<std::string> fileNames_;
};
