#include "report/CHistorySource.h"

#include "platform/FileSystem.h"
#include "report/SourceNames.h"

bool CHistorySource::Open(const std::string& path, std::string& reason)
{
    const platform::PathStatus status = platform::StatPath(platform::SystemPath(path));
    if (status.directory) {
        kind_ = Kind::Folder;
        folder_.Open(path);
        return true;
    }
    if (!status.regularFile) {
        reason = path + ": no such file or folder";
        return false;
    }
    kind_ = Kind::Archive;
    if (archive_.Open(path))
        return true;
    if (OpenDamaged(path))
        return true;
    reason = path + ": not a zip archive that can be read";
    return false;
}

// The entries as their own headers give them, with what stood in the way.
bool CHistorySource::OpenDamaged(const std::string& path)
{
    if (!damaged_.Open(path))
        return false;
    kind_ = Kind::DamagedArchive;
    damage_.push_back("the archive's directory of entries is missing or damaged (the archive may be cut off): "
                      "the entries were read from their own headers");
    for (const std::string& name : damaged_.CutOffEntries())
        damage_.push_back("the archive's entry " + name + " is cut off: what stands of it is read");
    if (!damaged_.WalkEnd().empty())
        damage_.push_back("the archive can't be read past this: " + damaged_.WalkEnd());
    return true;
}

std::vector<std::string> CHistorySource::ArchiveFiles() const
{
    switch (kind_) {
    case Kind::Archive:
        return archive_.FileNames();
    case Kind::DamagedArchive:
        return damaged_.FileNames();
    case Kind::Folder:
        break;
    }
    return std::vector<std::string>();
}

bool CHistorySource::Contains(const std::string& relativeName) const
{
    const std::string name = LookupName(relativeName);
    switch (kind_) {
    case Kind::Archive:
        return archive_.Contains(name);
    case Kind::DamagedArchive:
        return damaged_.Contains(name);
    case Kind::Folder:
        break;
    }
    return folder_.Contains(name);
}

bool CHistorySource::Stream(const std::string& relativeName, const BlockHandler& handler,
                            std::uint64_t limit) const
{
    const std::string name = LookupName(relativeName);
    const std::lock_guard<std::mutex> lock(reading_);
    switch (kind_) {
    case Kind::Archive:
        return archive_.Stream(name, limit, handler);
    case Kind::DamagedArchive:
        return damaged_.Stream(name, limit, handler);
    case Kind::Folder:
        break;
    }
    return folder_.Stream(name, limit, handler);
}

std::optional<std::uint64_t> CHistorySource::DeclaredSize(const std::string& relativeName) const
{
    switch (kind_) {
    case Kind::Archive:
        return archive_.DeclaredSize(LookupName(relativeName));
    case Kind::DamagedArchive:
        return damaged_.DeclaredSize(LookupName(relativeName));
    case Kind::Folder:
        break;
    }
    return std::nullopt;
}

bool CHistorySource::ReadWhole(const std::string& relativeName, std::string& bytes) const
{
    bytes.clear();
    return Stream(relativeName, [&bytes](const char* block, std::size_t size) { bytes.append(block, size); });
}

bool CHistorySource::ReadProfile(const std::string& relativeName, std::string& bytes) const
{
    if (IsArchive())
        return ReadWhole(relativeName, bytes);
    return folder_.ReadProfile(LookupName(relativeName), kFileLimit, bytes);
}
