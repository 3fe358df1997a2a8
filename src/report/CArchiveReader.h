// Reads a zip archive in place through minizip's reader: one pass over the
// central directory makes an index of the entries by their looked-up names,
// and a file is then inflated block by block, straight to the caller. Nothing
// is unpacked to disk.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

class CArchiveReader {
public:
    using BlockHandler = std::function<void(const char* bytes, std::size_t size)>;

    // An entry that declares at most this many bytes is inflated on the
    // caller's thread; a larger one on a thread of its own while the caller
    // uses its bytes.
    static constexpr std::uint64_t kInflatedHereUpTo = 4 * 1024 * 1024;

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
    // The bytes that the central directory says the entry holds; none for a
    // missing entry. Damaged data may hold more or fewer.
    std::optional<std::uint64_t> DeclaredSize(const std::string& lookupName) const;

private:
    struct Position {
        std::uint64_t directoryOffset;
        std::uint64_t fileNumber;
        std::uint64_t size;
    };

    bool IndexEntries();

    void* archive_ = nullptr;
    std::unordered_map<std::string, Position> entries_;
    std::vector<std::string> fileNames_;
};
