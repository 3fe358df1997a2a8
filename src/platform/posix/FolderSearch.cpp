// The folder search on POSIX systems: readdir in the file system's order, with
// the Windows matching of the pattern's last component. A plain name finds
// its entry in any case of its letters, and gives the name as it is on disk.
#include <dirent.h>
#include <sys/stat.h>

#include <string>

#include "platform/FileSystem.h"
#include "platform/common/AsciiCase.h"
#include "platform/posix/PosixFiles.h"

namespace platform {

namespace {

bool HasWildcard(const std::string& text)
{
    return text.find_first_of("*?") != std::string::npos;
}

bool MatchesEverything(const std::string& pattern)
{
    return pattern == "*" || pattern == "*.*";
}

// "*" stands for any run of characters, "?" for any one character; letters
// match without regard to case.
bool WildcardMatches(const char* pattern, const char* name)
{
    if (*pattern == '\0')
        return *name == '\0';
    if (*pattern == '*')
        return WildcardMatches(pattern + 1, name) || (*name != '\0' && WildcardMatches(pattern, name + 1));
    if (*name == '\0')
        return false;
    return (*pattern == '?' || FoldedAscii(*pattern) == FoldedAscii(*name)) &&
           WildcardMatches(pattern + 1, name + 1);
}

// The bits that tell a link or a special file from a file or folder: a
// symbolic link is a reparse point, as a Windows link is; so is, for root, a
// folder that another user may change, since what lies in it may become a
// link at any moment; a FIFO, socket or device has the device bit.
std::uint32_t KindAttributes(const struct stat& entry)
{
    if (S_ISLNK(entry.st_mode) || posix::OthersMayChangeFolder(entry))
        return kAttributeReparsePoint;
    if (!S_ISREG(entry.st_mode) && !S_ISDIR(entry.st_mode))
        return kAttributeDevice;
    return 0;
}

}  // namespace

struct FolderSearch::State {
    DIR* folder = nullptr;
    std::string folderPath;  // in the system's form, ends with "/"
    std::string namePattern;

    bool Fill(const std::string& name, FolderEntry& entry) const
    {
        const std::string systemPath = folderPath + name;
        struct stat link;
        if (lstat(systemPath.c_str(), &link) != 0)
            return false;
        struct stat status;
        if (stat(systemPath.c_str(), &status) != 0)
            status = link;
        entry.name = name;
        entry.attributes = posix::AttributesOf(systemPath, status) | KindAttributes(link);
        entry.lastWriteLocal = posix::LocalLastWriteTime(status);
        return true;
    }

    bool Accepts(const std::string& name) const
    {
        return MatchesEverything(namePattern) || WildcardMatches(namePattern.c_str(), name.c_str());
    }
};

FolderSearch::FolderSearch() = default;

FolderSearch::~FolderSearch()
{
    Close();
}

bool FolderSearch::First(const std::string& pattern, FolderEntry& entry)
{
    Close();
    const std::string systemPattern = SystemPath(pattern);
    const std::size_t slash = systemPattern.rfind('/');
    auto state = std::make_unique<State>();
    state->folderPath = slash == std::string::npos ? "./" : systemPattern.substr(0, slash + 1);
    state->namePattern = slash == std::string::npos ? systemPattern : systemPattern.substr(slash + 1);
    if (state->namePattern.empty())
        return false;
    if (!HasWildcard(state->namePattern))
        return state->Fill(state->namePattern, entry);
    state->folder = opendir(state->folderPath.c_str());
    if (state->folder == nullptr)
        return false;
    state_ = std::move(state);
    if (Next(entry))
        return true;
    Close();
    return false;
}

bool FolderSearch::Next(FolderEntry& entry)
{
    if (!state_ || state_->folder == nullptr)
        return false;
    while (const dirent* found = readdir(state_->folder)) {
        const std::string name = found->d_name;
        if (state_->Accepts(name) && state_->Fill(name, entry))
            return true;
    }
    return false;
}

void FolderSearch::Close()
{
    if (state_ && state_->folder != nullptr)
        closedir(state_->folder);
    state_.reset();
}

}  // namespace platform
