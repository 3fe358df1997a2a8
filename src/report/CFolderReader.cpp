#include "report/CFolderReader.h"

#include <algorithm>
#include <fstream>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Profile.h"
#include "zip/PathParts.h"

namespace {

constexpr std::size_t kBlockSize = 64 * 1024;

// Whether the entry at the path is a link (a junction or symbolic link) or a
// special file, which may lead out of the folder or never end (a FIFO).
bool IsLinkOrSpecial(const std::string& path)
{
    platform::FolderSearch search;
    platform::FolderEntry entry;
    const std::uint32_t linkOrSpecial = platform::kAttributeReparsePoint | platform::kAttributeDevice;
    return search.First(path, entry) && (entry.attributes & linkOrSpecial) != 0;
}

}  // namespace

// The looked-up name has "/" between its parts; the system's paths "\".
std::string CFolderReader::PathOf(const std::string& lookupName) const
{
    std::string relative = lookupName;
    std::replace(relative.begin(), relative.end(), '/', '\\');
    return folder_ + "\\" + relative;
}

// The names come from History.ini, which anyone who made the folder wrote:
// each component on the way is looked at, the file's own included, and the
// folder itself, which root reads nothing from while others may change it.
bool CFolderReader::LeadsInside(const std::string& lookupName) const
{
    const std::string path = PathOf(lookupName);
    if (lookupName.empty() || !StaysInsideFolder(path.substr(folder_.size() + 1)) ||
        platform::OthersMayChangeFolder(folder_))
        return false;
    for (std::string::size_type end = folder_.size() + 1; end != std::string::npos;) {
        end = path.find('\\', end + 1);
        if (IsLinkOrSpecial(path.substr(0, end)))
            return false;
    }
    return true;
}

bool CFolderReader::Contains(const std::string& lookupName) const
{
    return LeadsInside(lookupName) && platform::StatPath(platform::SystemPath(PathOf(lookupName))).regularFile;
}

bool CFolderReader::Stream(const std::string& lookupName, std::uint64_t limit,
                           const BlockHandler& handler) const
{
    if (!Contains(lookupName))
        return false;
    std::filebuf file;
    if (!platform::OpenFileBuffer(file, PathOf(lookupName), std::ios_base::in | std::ios_base::binary))
        return false;
    std::vector<char> block(kBlockSize);
    std::uint64_t total = 0;
    while (total < limit) {
        const std::streamsize wanted =
            static_cast<std::streamsize>(std::min<std::uint64_t>(kBlockSize, limit - total));
        const std::streamsize read = file.sgetn(block.data(), wanted);
        if (read <= 0)
            break;
        handler(block.data(), static_cast<std::size_t>(read));
        total += static_cast<std::uint64_t>(read);
    }
    return true;
}

bool CFolderReader::ReadProfile(const std::string& lookupName, std::uint64_t limit,
                                std::string& bytes) const
{
    if (!Contains(lookupName) || !platform::ReadProfileFile(PathOf(lookupName), bytes))
        return false;
    if (bytes.size() > limit)
        bytes.resize(static_cast<std::size_t>(limit));
    return true;
}
