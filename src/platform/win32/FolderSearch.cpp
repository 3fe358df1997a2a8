// The folder search on Windows: FindFirstFileA, FindNextFileA and FindClose,
// with each last-write time turned into local calendar fields.
#include <windows.h>

#include "platform/FileSystem.h"
#include "platform/win32/Win32Time.h"

namespace platform {

namespace {

CalendarTime LocalCalendarTime(const FILETIME& universal)
{
    FILETIME local;
    SYSTEMTIME fields;
    if (!FileTimeToLocalFileTime(&universal, &local) || !FileTimeToSystemTime(&local, &fields))
        return CalendarTime();
    return win32::CalendarTimeOf(fields);
}

void Fill(const WIN32_FIND_DATAA& found, FolderEntry& entry)
{
    entry.name = found.cFileName;
    entry.attributes = found.dwFileAttributes;
    entry.lastWriteLocal = LocalCalendarTime(found.ftLastWriteTime);
}

}  // namespace

struct FolderSearch::State {
    HANDLE search = INVALID_HANDLE_VALUE;
};

FolderSearch::FolderSearch() = default;

FolderSearch::~FolderSearch()
{
    Close();
}

bool FolderSearch::First(const std::string& pattern, FolderEntry& entry)
{
    Close();
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return false;
    state_ = std::make_unique<State>();
    state_->search = search;
    Fill(found, entry);
    return true;
}

bool FolderSearch::Next(FolderEntry& entry)
{
    if (!state_)
        return false;
    WIN32_FIND_DATAA found;
    if (!FindNextFileA(state_->search, &found))
        return false;
    Fill(found, entry);
    return true;
}

void FolderSearch::Close()
{
    if (state_)
        FindClose(state_->search);
    state_.reset();
}

}  // namespace platform
