// Reads the files of a history folder on disk: the store itself, or an
// archive unpacked by hand. Names are taken relative to the folder, and lead
// to regular files inside it only: a name that climbs out or begins at a root
// or drive, and a link or special file anywhere on its way, are not there.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

class CFolderReader {
public:
    using BlockHandler = std::function<void(const char* bytes, std::size_t size)>;

    void Open(const std::string& folder) { folder_ = folder; }
    bool Contains(const std::string& lookupName) const;
    // Hands over the file's bytes, at most `limit` of them; false if the file
    // can't be opened or a read fails.
    bool Stream(const std::string& lookupName, std::uint64_t limit, const BlockHandler& handler) const;
    // A profile file's content as the recorder's own profile calls read it
    // (a write in flight is waited for, a writer's unfinished work never
    // shows), at most `limit` bytes of it; false if it can't be read.
    bool ReadProfile(const std::string& lookupName, std::uint64_t limit, std::string& bytes) const;

private:
    std::string PathOf(const std::string& lookupName) const;
    bool LeadsInside(const std::string& lookupName) const;

    std::string folder_;
};
