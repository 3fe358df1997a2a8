// The profile files of this process, read once and kept parsed. Before every
// use the file's identity on disk is compared with the one that was read, so
// that each call still sees the file as it is now, whoever changed it.
// Writes replace the whole file at once: a temporary file beside it is
// written in full and then renamed over it, so that the file is always
// either the old one or the new one, never a torn or empty one.
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <ctime>
#include <list>
#include <memory>
#include <string>

#include "platform/posix/ProfileDocument.h"

namespace platform {
namespace posix {

// What tells one version of a file from another without reading it.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    std::time_t modifiedSeconds = 0;
    long modifiedNanoseconds = 0;

    static FileIdentity Of(const struct stat& status);
    bool operator==(const FileIdentity& other) const;
};

enum class ProfileOpenResult {
    Opened,    // the file was read
    NotFound,  // no such file in an existing folder: an empty profile
    Failed,    // the folder is missing, the path is a folder, or no access
};

class ProfileFileCache {
public:
    static ProfileFileCache& Instance();

    // The parsed file at `systemPath`, as it is on disk now. With NotFound
    // the document is empty; with Failed it is null.
    ProfileOpenResult Open(const std::string& systemPath, const ProfileDocument*& document);

    // As Open, and the file must also be writable: the Windows calls open it
    // for reading and writing before they change it, which a file whose
    // attribute is read-only refuses, to every user.
    ProfileOpenResult OpenForWriting(const std::string& systemPath,
                                     const ProfileDocument*& document);

    // Replaces the file's content by `bytes`. False, with the file as it was,
    // when any step fails.
    bool Replace(const std::string& systemPath, const std::string& bytes);

private:
    struct Entry {
        std::string systemPath;
        FileIdentity identity;
        ProfileDocument document;
    };

    Entry* Cached(const std::string& systemPath);
    Entry& Remember(const std::string& systemPath, const FileIdentity& identity,
                    ProfileDocument document);
    void Forget(const std::string& systemPath);
    ProfileOpenResult Load(const std::string& systemPath, const ProfileDocument*& document);

    // Most recently used first; a process works on very few profile files.
    static constexpr std::size_t kCapacity = 8;
    std::list<Entry> entries_;
    ProfileDocument empty_;
};

}  // namespace posix
}  // namespace platform
