#include "report/CHistorySource.h"

#include "platform/FileSystem.h"
#include "report/SourceNames.h"

bool CHistorySource::Open(const std::string& path, std::string& reason)
{
    const platform::PathStatus status = platform::StatPath(platform::SystemPath(path));
    if (status.directory) {
        isArchive_ = false;
        folder_.Open(path);
        return true;
    }
    if (!status.regularFile) {
        reason = path + ": no such file or folder";
        return false;
    }
    isArchive_ = true;
    if (!archive_.Open(path)) {
        reason = path + ": not a zip archive that can be read";
        return false;
    }
    return true;
}

bool CHistorySource::Contains(const std::string& relativeName) const
{
    const std::string name = LookupName(relativeName);
    return isArchive_ ? archive_.Contains(name) : folder_.Contains(name);
}

bool CHistorySource::Stream(const std::string& relativeName, const BlockHandler& handler) const
{
    const std::string name = LookupName(relativeName);
    return isArchive_ ? archive_.Stream(name, kFileLimit, handler)
                      : folder_.Stream(name, kFileLimit, handler);
}

bool CHistorySource::ReadWhole(const std::string& relativeName, std::string& bytes) const
{
    bytes.clear();
    return Stream(relativeName, [&bytes](const char* block, std::size_t size) { bytes.append(block, size); });
}

bool CHistorySource::ReadProfile(const std::string& relativeName, std::string& bytes) const
{
    if (isArchive_)
        return ReadWhole(relativeName, bytes);
    return folder_.ReadProfile(LookupName(relativeName), kFileLimit, bytes);
}
