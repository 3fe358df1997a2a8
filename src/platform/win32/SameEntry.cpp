// Whether two names lead to one entry, on Windows: by the volume serial number
// and file index of the opened entry (a link is opened through to its target),
// and for a name that isn't there yet, by its folder's and its own name in any
// case, as the file system finds names.
#include "platform/FileSystem.h"

#include <windows.h>
// The layer's own name, not the header's macro for the ANSI call.
#undef GetFullPathName

#include "platform/common/AsciiCase.h"

namespace platform {
namespace {

struct EntryKey {
    DWORD volume = 0;
    DWORD indexHigh = 0;
    DWORD indexLow = 0;
    // Empty for an entry that exists; else the folded name below the folder
    // that the other fields then name.
    std::string missingName;

    bool operator==(const EntryKey& other) const
    {
        return volume == other.volume && indexHigh == other.indexHigh && indexLow == other.indexLow &&
               missingName == other.missingName;
    }
};

// The full path, "." and ".." resolved as the system resolves them; empty if
// it can't be made.
std::string FullPath(const std::string& path)
{
    std::string full;
    return platform::GetFullPathName(path, 32768, full) ? full : std::string();
}

// The path without its last component: "C:\a" of "C:\a\b", "C:\" of "C:\a";
// the path itself at its root.
std::string ParentOf(const std::string& fullPath)
{
    std::string trimmed = fullPath;
    while (trimmed.size() > 3 && (trimmed.back() == '\\' || trimmed.back() == '/'))
        trimmed.pop_back();
    const std::string::size_type separator = trimmed.find_last_of("\\/");
    if (separator == std::string::npos)
        return trimmed;
    const std::string parent = trimmed.substr(0, separator);
    return parent.size() == 2 && parent[1] == ':' ? parent + "\\" : parent;
}

bool OpenedKey(const std::string& path, EntryKey& key)
{
    const HANDLE entry = CreateFileA(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                     nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (entry == INVALID_HANDLE_VALUE)
        return false;
    BY_HANDLE_FILE_INFORMATION information;
    const bool known = GetFileInformationByHandle(entry, &information) != 0;
    CloseHandle(entry);
    key.volume = information.dwVolumeSerialNumber;
    key.indexHigh = information.nFileIndexHigh;
    key.indexLow = information.nFileIndexLow;
    return known;
}

bool KeyOf(const std::string& path, EntryKey& key)
{
    const std::string full = FullPath(path);
    if (full.empty())
        return false;
    if (OpenedKey(full, key))
        return true;
    const std::string parent = ParentOf(full);
    if (parent == full || !OpenedKey(parent, key))
        return false;
    key.missingName = FoldedAsciiText(full.substr(full.find_last_of("\\/") + 1));
    return !key.missingName.empty();
}

}  // namespace

bool SameEntry(const std::string& first, const std::string& second)
{
    EntryKey one;
    EntryKey other;
    return KeyOf(first, one) && KeyOf(second, other) && one == other;
}

bool LiesWithin(const std::string& path, const std::string& folder)
{
    EntryKey folderKey;
    const std::string fullFolder = FullPath(folder);
    if (fullFolder.empty() || !OpenedKey(fullFolder, folderKey))
        return false;
    std::string ancestor = FullPath(path);
    while (!ancestor.empty()) {
        EntryKey key;
        if (OpenedKey(ancestor, key) && key == folderKey)
            return true;
        const std::string parent = ParentOf(ancestor);
        if (parent == ancestor)
            break;
        ancestor = parent;
    }
    return false;
}

}  // namespace platform
