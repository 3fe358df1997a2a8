// The profile files of this process, read once and kept parsed. Before every
// use the file's identity on disk is compared with the one that was read, so
// that each call still sees the file as it is now, whoever changed it.
//
// Writes change the file in place, through the journal of ProfileJournal.h,
// under an exclusive flock of the file, so that two writers never mix their
// steps; readers hold a shared one while they read. A write in place keeps
// the file's inode and may keep its size, and the system keeps modification
// times in coarse steps: another process's write within one step can't be
// told from the identity. Every call of the system that may meet another
// process's writes holds the store's lock, and taking that lock drops all
// parsed copies (ForgetAll).
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <list>
#include <memory>
#include <string>

#include "platform/common/ProfileDocument.h"

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
    // Changes a document; false when there is nothing to write.
    using DocumentChange = std::function<bool(ProfileDocument&)>;

    static ProfileFileCache& Instance();

    // The parsed file at `systemPath`, as it stands for now: a file that a
    // writer left unfinished is read as the content that its journal gives,
    // and finished first where this process may write it. With NotFound the
    // document is empty; with Failed it is null.
    ProfileOpenResult Open(const std::string& systemPath, const ProfileDocument*& document);

    // Applies `change` to the file's document and writes the result in place;
    // a missing file in an existing folder is made. The Windows calls open the
    // file for reading and writing first, which a folder, a file without
    // access and a file whose attribute is read-only refuse, to every user:
    // false then, and false when a step of the write fails, with the file
    // standing for its old content.
    bool Change(const std::string& systemPath, const DocumentChange& change);

    // Drops every parsed copy, so that each file is read again.
    void ForgetAll();

    // The bytes of the file at `systemPath` as it stands for now, read under
    // the lock that writers take: a journal is never part of them. A writer's
    // unfinished work is finished where this process may write the file, as
    // Open does. False when the file can't be read.
    bool ReadContent(const std::string& systemPath, std::string& content);

private:
    struct Entry {
        std::string systemPath;
        FileIdentity identity;
        ProfileDocument document;
        bool whole = false;  // the file holds no journal: its bytes are the document's
    };

    bool ChangeMissingFile(const std::string& systemPath, const DocumentChange& change);
    bool ChangeAt(const std::string& systemPath, int openFlags, const DocumentChange& change);
    bool ChangeOpenFile(int fd, const std::string& systemPath, const DocumentChange& change);
    bool TakeDocument(int fd, const std::string& systemPath, const struct stat& status,
                      ProfileDocument& document, std::uint64_t& size);
    Entry* Cached(const std::string& systemPath);
    Entry& Remember(const std::string& systemPath, const FileIdentity& identity,
                    ProfileDocument document, bool whole);
    void Forget(const std::string& systemPath);
    bool FinishWork(const std::string& systemPath);
    ProfileOpenResult Load(const std::string& systemPath, const ProfileDocument*& document);

    // Most recently used first; a process works on very few profile files.
    static constexpr std::size_t kCapacity = 8;
    std::list<Entry> entries_;
    ProfileDocument empty_;
};

}  // namespace posix
}  // namespace platform
