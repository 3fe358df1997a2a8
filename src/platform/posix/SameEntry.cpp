// Whether two names lead to one entry, on POSIX: by the device and inode that
// stat (which follows links) reports, and for a name that isn't there yet, by
// its folder's and its own name in any case, as the layer finds names.
#include "platform/FileSystem.h"

#include <sys/stat.h>

#include <climits>
#include <cstdlib>
#include <memory>

#include "platform/common/AsciiCase.h"

namespace platform {
namespace {

struct EntryKey {
    dev_t device = 0;
    ino_t inode = 0;
    // Empty for an entry that exists; else the folded name below the folder
    // that device and inode then name.
    std::string missingName;

    bool operator==(const EntryKey& other) const
    {
        return device == other.device && inode == other.inode && missingName == other.missingName;
    }
};

std::string ParentOf(const std::string& path)
{
    const std::string::size_type slash = path.find_last_of('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? std::string("/") : path.substr(0, slash);
}

bool StatKey(const std::string& path, EntryKey& key)
{
    struct stat status {};
    if (stat(path.c_str(), &status) != 0)
        return false;
    key.device = status.st_dev;
    key.inode = status.st_ino;
    return true;
}

bool KeyOf(const std::string& path, EntryKey& key)
{
    const std::string systemPath = SystemPath(path);
    if (StatKey(systemPath, key))
        return true;
    if (!StatKey(ParentOf(systemPath), key))
        return false;
    key.missingName = FoldedAsciiText(systemPath.substr(systemPath.find_last_of('/') + 1));
    return !key.missingName.empty() && key.missingName != "." && key.missingName != "..";
}

// The path of the deepest folder or file of `path` that exists, with every
// link and "." or ".." component resolved; empty if none can be resolved.
std::string ResolvedExistingPart(std::string path)
{
    struct stat status {};
    while (stat(path.c_str(), &status) != 0) {
        const std::string parent = ParentOf(path);
        if (parent == path)
            return std::string();
        path = parent;
    }
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path.c_str(), nullptr), &std::free);
    return resolved ? std::string(resolved.get()) : std::string();
}

// Whether the resolved path, or a folder above it, is the folder.
bool ResolvedWithin(const std::string& systemPath, const EntryKey& folderKey)
{
    std::string ancestor = ResolvedExistingPart(systemPath);
    while (!ancestor.empty()) {
        EntryKey key;
        if (StatKey(ancestor, key) && key == folderKey)
            return true;
        const std::string parent = ParentOf(ancestor);
        if (parent == ancestor)
            break;
        ancestor = parent;
    }
    return false;
}

}  // namespace

bool SameEntry(const std::string& first, const std::string& second)
{
    EntryKey one;
    EntryKey other;
    return KeyOf(first, one) && KeyOf(second, other) && one == other;
}

// Both where a link at the name leads and the folder that holds the name
// count: a file is written in place of the entry at its name, a link there
// included, and a link elsewhere leads to what it names.
bool LiesWithin(const std::string& path, const std::string& folder)
{
    EntryKey folderKey;
    if (!StatKey(SystemPath(folder), folderKey))
        return false;
    const std::string systemPath = SystemPath(path);
    const std::string last = systemPath.substr(systemPath.find_last_of('/') + 1);
    const bool namesAFolder = last.empty() || last == "." || last == "..";
    return ResolvedWithin(systemPath, folderKey) ||
           (!namesAFolder && ResolvedWithin(ParentOf(systemPath), folderKey));
}

}  // namespace platform
