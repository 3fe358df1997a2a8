#include "platform/posix/ProfileJournal.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace platform {
namespace posix {

namespace {

// The header's place: the start of a slot of this size, which it never leaves.
constexpr std::uint64_t kSlot = 64;

// Bytes that no profile text holds: a NUL, the name, and the old end-of-file mark.
constexpr char kMagic[8] = {'\0', 'Z', 'O', 'R', 'J', 'N', 'L', '\x1a'};

// The magic, then five little-endian words: old size, new size, the header's
// own offset, the new content's checksum and the checksum of all before it.
constexpr std::size_t kWords = 5;
constexpr std::size_t kHeaderSize = sizeof kMagic + kWords * 8;

// A file is searched for a header in blocks of this many bytes, a whole
// number of slots.
constexpr std::uint64_t kSearchBlock = 1024 * kSlot;

struct Header {
    std::uint64_t oldSize = 0;
    std::uint64_t newSize = 0;
    std::uint64_t offset = 0;
    std::uint64_t contentSum = 0;
};

// FNV-1a, 64 bits.
std::uint64_t Checksum(const char* data, std::size_t size)
{
    std::uint64_t hash = 14695981039346656037ull;
    for (std::size_t i = 0; i < size; ++i) {
        hash ^= static_cast<unsigned char>(data[i]);
        hash *= 1099511628211ull;
    }
    return hash;
}

void PutWord(std::string& out, std::uint64_t word)
{
    for (int shift = 0; shift < 64; shift += 8)
        out += static_cast<char>((word >> shift) & 0xFF);
}

std::uint64_t WordAt(const char* data)
{
    std::uint64_t word = 0;
    for (int i = 7; i >= 0; --i)
        word = (word << 8) | static_cast<unsigned char>(data[i]);
    return word;
}

std::string Encoded(const Header& header)
{
    std::string out(kMagic, sizeof kMagic);
    PutWord(out, header.oldSize);
    PutWord(out, header.newSize);
    PutWord(out, header.offset);
    PutWord(out, header.contentSum);
    PutWord(out, Checksum(out.data(), out.size()));
    return out;
}

// A header whose bytes are `data`, whole and saying that it stands at `at`.
bool HeaderIn(const char* data, std::uint64_t at, Header& header)
{
    if (std::memcmp(data, kMagic, sizeof kMagic) != 0)
        return false;
    if (WordAt(data + kHeaderSize - 8) != Checksum(data, kHeaderSize - 8))
        return false;
    header.oldSize = WordAt(data + 8);
    header.newSize = WordAt(data + 16);
    header.offset = WordAt(data + 24);
    header.contentSum = WordAt(data + 32);
    return header.offset == at && header.oldSize <= at && header.newSize <= at;
}

// The last slot where a header may stand in a file of `size` bytes.
std::uint64_t HighestSlot(std::uint64_t size)
{
    return (size - kHeaderSize) / kSlot * kSlot;
}

// The first: a writer puts its header at p, no lower than either content's
// size, and the file then ends at p + 64 + the new size at most, so p lies
// in the file's second half. No slot below is looked at, by any reader.
std::uint64_t LowestSlot(std::uint64_t size)
{
    const std::uint64_t half = size > kSlot ? (size - kSlot) / 2 : 0;
    return (half + kSlot - 1) / kSlot * kSlot;
}

// The header of a journal in the bytes, looked for at every slot from the end.
bool FindHeader(const std::string& bytes, Header& header)
{
    if (bytes.size() < kHeaderSize)
        return false;
    const std::uint64_t lowest = LowestSlot(bytes.size());
    for (std::uint64_t at = HighestSlot(bytes.size()); at >= lowest; at -= kSlot) {
        if (HeaderIn(bytes.data() + at, at, header))
            return true;
        if (at == 0)
            return false;
    }
    return false;
}

bool ReadAt(int descriptor, std::string& data, std::uint64_t offset, std::uint64_t size)
{
    data.resize(size);
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t count = pread(descriptor, &data[done], data.size() - done,
                                    static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

// Whether the open file of `size` bytes holds a header, at the slots that
// FindHeader looks at, read a block at a time from the end.
bool HoldsHeader(int descriptor, std::uint64_t size)
{
    if (size < kHeaderSize)
        return false;
    const std::uint64_t lowest = LowestSlot(size);
    std::string block;
    Header header;
    for (std::uint64_t end = HighestSlot(size) + kSlot; end > lowest;) {
        const std::uint64_t begin = end - std::min(end - lowest, kSearchBlock);
        if (!ReadAt(descriptor, block, begin, std::min(end, size) - begin))
            return false;
        for (std::uint64_t at = end - kSlot;; at -= kSlot) {
            if (at + kHeaderSize <= size && HeaderIn(block.data() + (at - begin), at, header))
                return true;
            if (at == begin)
                break;
        }
        end = begin;
    }
    return false;
}

bool CutTo(int descriptor, std::uint64_t size)
{
    return ftruncate(descriptor, static_cast<off_t>(size)) == 0;
}

// Reserves the blocks of the file's first `end` bytes, the journal's and
// the new front's among them, without changing its size: a disk that fills
// then refuses the write before any byte of the file has changed. This is
// the call behind posix_fallocate, with the flag that keeps the size; a
// longer file would stand for its old content followed by zeros if its
// writer died before the header was written. A file system that can't
// reserve goes on without: a disk that fills while the new front is written
// then leaves the file standing for the new content, by its journal.
bool Reserve(int descriptor, std::uint64_t end)
{
    int result;
    do {
        result = fallocate(descriptor, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(end));
    } while (result != 0 && errno == EINTR);
    return result == 0 || errno == EOPNOTSUPP || errno == ENOSYS;
}

}  // namespace

JournalView ViewOf(const std::string& bytes)
{
    JournalView view;
    Header header;
    if (!FindHeader(bytes, header)) {
        view.content = bytes;
        return view;
    }
    view.interrupted = true;
    const std::uint64_t start = header.offset + kSlot;
    view.forward = bytes.size() >= start + header.newSize &&
                   Checksum(bytes.data() + start, header.newSize) == header.contentSum;
    view.content = view.forward ? bytes.substr(start, header.newSize) : bytes.substr(0, header.oldSize);
    return view;
}

bool WriteThroughJournal(int descriptor, std::uint64_t oldSize, const std::string& content)
{
    Header header;
    header.oldSize = oldSize;
    header.newSize = content.size();
    header.offset = (std::max<std::uint64_t>(oldSize, content.size()) + kSlot - 1) / kSlot * kSlot;
    header.contentSum = Checksum(content.data(), content.size());
    const std::uint64_t journalEnd = header.offset + kSlot + content.size();
    if (!Reserve(descriptor, journalEnd) || !WriteAt(descriptor, Encoded(header), header.offset) ||
        !WriteAt(descriptor, content, header.offset + kSlot) || !Flush(descriptor)) {
        CutTo(descriptor, oldSize);
        return false;
    }
    return WriteAt(descriptor, content, 0) && Flush(descriptor) && CutTo(descriptor, content.size());
}

bool Repair(int descriptor, const JournalView& view)
{
    return (!view.forward || (WriteAt(descriptor, view.content, 0) && Flush(descriptor))) &&
           CutTo(descriptor, view.content.size());
}

bool ViewOfJournalFile(int descriptor, JournalView& view)
{
    struct stat status;
    if (fstat(descriptor, &status) != 0 || status.st_size < 0)
        return false;
    const std::uint64_t size = static_cast<std::uint64_t>(status.st_size);
    std::string bytes;
    if (!HoldsHeader(descriptor, size) || !ReadAt(descriptor, bytes, 0, size))
        return false;
    view = ViewOf(bytes);
    return view.interrupted;
}

bool Flush(int descriptor)
{
    int result;
    do {
        result = fdatasync(descriptor);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

bool WriteAt(int descriptor, const std::string& data, std::uint64_t offset)
{
    std::size_t done = 0;
    while (done < data.size()) {
        const ssize_t count = pwrite(descriptor, data.data() + done, data.size() - done,
                                     static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        done += static_cast<std::size_t>(count);
    }
    return true;
}

}  // namespace posix
}  // namespace platform
