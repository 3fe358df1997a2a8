// Where the report reads a history from: an archive that ZORGetInstallLog -f
// wrote, read in place, or a history folder. File names are relative to the
// history folder, with "\" or "/" between their parts; a name that leads out
// of the source is never read.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "report/CArchiveReader.h"
#include "report/CFolderReader.h"

class CHistorySource {
public:
    using BlockHandler = std::function<void(const char* bytes, std::size_t size)>;

    // No file is read past this many bytes: a damaged or hostile archive can't
    // make the report inflate without end.
    static constexpr std::uint64_t kFileLimit = 256ull * 1024 * 1024;

    // False, with a one-line reason, if the path is neither a folder nor an
    // archive that can be read.
    bool Open(const std::string& path, std::string& reason);

    bool IsArchive() const { return isArchive_; }
    bool Contains(const std::string& relativeName) const;
    // False if the file is missing, can't be read or is damaged; what was
    // handed over by then stands.
    bool Stream(const std::string& relativeName, const BlockHandler& handler) const;
    // The whole file, up to the limit; false as for Stream.
    bool ReadWhole(const std::string& relativeName, std::string& bytes) const;
    // A profile file, History.ini, whole up to the limit: in a folder as the
    // recorder's profile calls read it, so that a write in flight or a
    // writer's unfinished work never shows; in an archive as it is stored.
    bool ReadProfile(const std::string& relativeName, std::string& bytes) const;

private:
    bool isArchive_ = false;
    CArchiveReader archive_;
    CFolderReader folder_;
};
