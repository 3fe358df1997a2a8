// File helpers for tests. Paths are in the system's own form (backslashes
// allowed); they go through platform::SystemPath before the C++ library sees them.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

std::string ReadWholeFile(const std::string& path);
void WriteWholeFile(const std::string& path, const std::string& content);
bool PathExists(const std::string& path);
// Makes `link` a symbolic link to the file or folder `target`; false where
// the file system or the system can't (Wine makes none).
bool MakeSymbolicLink(const std::string& target, const std::string& link, bool folder);
void MakeFolders(const std::string& path);
// Takes every write permission away from a file or folder (on Windows, sets
// its read-only attribute), or gives it back; a path that isn't there is
// passed over.
void SetWritable(const std::string& path, bool writable);

// A file or folder made read-only for as long as the object lives; its write
// permission comes back at the end, so that the test's folder can be removed
// (Windows doesn't delete a read-only file).
class ReadOnlyWhileAlive {
public:
    explicit ReadOnlyWhileAlive(std::string path) : path_(std::move(path)) { SetWritable(path_, false); }
    ~ReadOnlyWhileAlive() { SetWritable(path_, true); }
    ReadOnlyWhileAlive(const ReadOnlyWhileAlive&) = delete;
    ReadOnlyWhileAlive& operator=(const ReadOnlyWhileAlive&) = delete;

private:
    std::string path_;
};

// Names of the entries of a folder, sorted, without the names that begin with
// a dot, which the archive passes over: the store's lock file is one.
std::vector<std::string> FolderNames(const std::string& path);

// Lines joined, each ended by the line end that a text-mode stream writes here.
std::string TextLines(std::initializer_list<std::string> lines);
// The text with each "\n" replaced by the platform's text line end.
std::string WithPlatformLineEnds(const std::string& text);

// Keeps a copy of an archive for the independent readers that run after the tests.
void KeepArchiveForCheck(const std::string& zipPath, const std::string& name);
