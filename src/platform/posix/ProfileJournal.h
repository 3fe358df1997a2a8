// How a profile file is rewritten in place and yet always holds either its
// old or its new content, whenever the writing process dies.
//
// The file keeps its inode: a symbolic link stays a link to it, a hard link
// stays a link, its owner and permissions stay, and a file that may be
// written in a folder that may not be changed can be written. A write goes in
// three steps, each of which leaves a file that stands for one of the two
// contents:
//
//   1. Behind both contents, at an offset p = max(old size, new size) rounded
//      up to 64, a header (the old and the new size, p, a checksum of the new
//      content and one of the header itself), and behind it the new content:
//      the journal. Until it is whole, the file stands for its old content,
//      the first `old size` bytes, which nothing has touched.
//   2. The new content over the front of the file. Once the journal is
//      whole, the file stands for the new content, wherever its front is.
//   3. The file cut to the new size, which drops the journal.
//
// The header lies within one 64-byte slot, so the system writes it all at
// once or not at all: a write of a regular file stops early only at a page
// boundary. The first reader that finds a journal left by a writer that died
// sees the content it stands for; the first that may write the file finishes
// the work, by writing the new content over the front and cutting the file
// (forward), or by cutting it to the old size (back). Both can be done again
// if that process dies too.
//
// Before step 1 the blocks of both are reserved, so that a disk that fills
// refuses the write before anything has changed. The journal reaches the
// disk (fdatasync) before step 2 begins, and the new front before step 3,
// so the order holds for a machine that loses its power too: the checksums
// tell a journal whose bytes reached the disk only in part, which then
// stands for the old content.
//
// A header lies in the file's second half, where a writer puts it: a reader
// looks for one there alone.
#pragma once

#include <cstdint>
#include <string>

namespace platform {
namespace posix {

// What a file's bytes stand for.
struct JournalView {
    std::string content;       // the old content or the new one
    bool interrupted = false;  // a journal was found: the file needs repair
    bool forward = false;      // the journal is whole: the content is the new one
};

// Reads the bytes of a profile file: the content that they stand for.
JournalView ViewOf(const std::string& bytes);

// Rewrites the open file, whose content is now `oldSize` bytes long and holds
// no journal, with `content`. False when a step fails; the file then stands
// for its old content, or for the new one if the journal was whole.
bool WriteThroughJournal(int descriptor, std::uint64_t oldSize, const std::string& content);

// Finishes the work of a writer that died, as `view` found it. False when a
// step fails; the file still stands for the view's content.
bool Repair(int descriptor, const JournalView& view);

// Whether the open file holds a journal; if so, `view` is what it stands for.
// A file without one is searched but not read whole.
bool ViewOfJournalFile(int descriptor, JournalView& view);

// Brings what was written to the open file to the disk (fdatasync).
bool Flush(int descriptor);

// Writes all of `data` at `offset`, as many calls as it takes.
bool WriteAt(int descriptor, const std::string& data, std::uint64_t offset);

}  // namespace posix
}  // namespace platform
