// Where the report reads a history from: an archive that ZORGetInstallLog -f
// wrote, read in place, or a history folder. File names are relative to the
// history folder, with "\" or "/" between their parts; a name that leads out
// of the source is never read. An archive whose central directory is
// missing or damaged is read by its entries' own headers, and the damage is
// told.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "report/CArchiveReader.h"
#include "report/CFolderReader.h"
#include "report/CLocalHeaderReader.h"

class CHistorySource {
public:
    using BlockHandler = std::function<void(const char* bytes, std::size_t size)>;

    // No file is read past this many bytes: a damaged or hostile archive can't
    // make the report inflate without end.
    static constexpr std::uint64_t kFileLimit = 256ull * 1024 * 1024;

    // False, with a one-line reason, if the path is neither a folder nor an
    // archive that can be read.
    bool Open(const std::string& path, std::string& reason);

    bool IsArchive() const { return kind_ != Kind::Folder; }
    // What is wrong with the source as a whole, in words: empty for a whole
    // archive or a folder.
    const std::vector<std::string>& Damage() const { return damage_; }
    // The names of the files in an archive, as stored; empty for a folder.
    std::vector<std::string> ArchiveFiles() const;
    bool Contains(const std::string& relativeName) const;
    // False if the file is missing, can't be read or is damaged; what was
    // handed over by then stands. At most `limit` bytes are handed over, and
    // a file that reaches it counts as read. One file is read at a time,
    // whichever thread asks.
    bool Stream(const std::string& relativeName, const BlockHandler& handler,
                std::uint64_t limit = kFileLimit) const;
    // The bytes that an archive's entry declares: what its reading will most
    // likely give, though damage may give more or fewer. None for a missing
    // entry and for a folder's file.
    std::optional<std::uint64_t> DeclaredSize(const std::string& relativeName) const;
    // The whole file, up to the limit; false as for Stream.
    bool ReadWhole(const std::string& relativeName, std::string& bytes) const;
    // A profile file, History.ini, whole up to the limit: in a folder as the
    // recorder's profile calls read it, so that a write in flight or a
    // writer's unfinished work never shows; in an archive as it is stored.
    bool ReadProfile(const std::string& relativeName, std::string& bytes) const;

private:
    enum class Kind { Folder, Archive, DamagedArchive };

    bool OpenDamaged(const std::string& path);

    Kind kind_ = Kind::Folder;
    CArchiveReader archive_;
    CLocalHeaderReader damaged_;
    CFolderReader folder_;
    std::vector<std::string> damage_;
    // The archive readers keep the entry being read.
    mutable std::mutex reading_;
};
