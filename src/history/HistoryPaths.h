// Where the history store lies, and the small file and clock helpers that the
// rest of the system calls. None of them holds state: every call asks the
// platform again.
#pragma once

#include <string>

// The folder's default path from the shell's folder look-up, or empty.
std::string GetSpecialFolder(int folderId);

// The machine-wide application data folder; never empty.
std::string GetCommonAppDataFolder();

// <AppData>\TAQ\ZORHistory
std::string GetHistoryFolder();

// <AppData>\TAQ\ZORHistory\History.ini
std::string GetHistoryIniPath();

// True if the path, with surrounding double quotes taken off, is a regular file.
bool FileExists(const char* path);

// True if the path, with surrounding double quotes taken off, is a directory.
bool DirectoryExists(const char* path);

// Local time now, as "%Y%m%d %H:%M:%S".
std::string GetTimeStamp();

// False on the Windows 95 family.
bool IsWindowsNT();

// The decision of IsWindowsNT on the version fields alone.
bool IsWindowsNTVersion(unsigned major, unsigned minor, unsigned platformId);
