#include "platform/posix/ProfileJournal.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

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

std::uint64_t WordAt(const std::string& bytes, std::size_t at)
{
    std::uint64_t word = 0;
    for (int i = 7; i >= 0; --i)
        word = (word << 8) | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
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

// A header at `at` that is whole and says that it stands there.
bool HeaderAt(const std::string& bytes, std::uint64_t at, Header& header)
{
    if (bytes.compare(at, sizeof kMagic, kMagic, sizeof kMagic) != 0)
        return false;
    const std::size_t sumAt = at + kHeaderSize - 8;
    if (WordAt(bytes, sumAt) != Checksum(bytes.data() + at, kHeaderSize - 8))
        return false;
    header.oldSize = WordAt(bytes, at + 8);
    header.newSize = WordAt(bytes, at + 16);
    header.offset = WordAt(bytes, at + 24);
    header.contentSum = WordAt(bytes, at + 32);
    return header.offset == at && header.oldSize <= at && header.newSize <= at;
}

// The header of a journal in the bytes, looked for at every slot from the end.
bool FindHeader(const std::string& bytes, Header& header)
{
    if (bytes.size() < kHeaderSize)
        return false;
    for (std::uint64_t at = (bytes.size() - kHeaderSize) / kSlot * kSlot;; at -= kSlot) {
        if (HeaderAt(bytes, at, header))
            return true;
        if (at == 0)
            return false;
    }
}

bool CutTo(int descriptor, std::uint64_t size)
{
    return ftruncate(descriptor, static_cast<off_t>(size)) == 0;
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
    if (!WriteAt(descriptor, Encoded(header), header.offset) ||
        !WriteAt(descriptor, content, header.offset + kSlot)) {
        CutTo(descriptor, oldSize);
        return false;
    }
    return WriteAt(descriptor, content, 0) && CutTo(descriptor, content.size());
}

bool Repair(int descriptor, const JournalView& view)
{
    return (!view.forward || WriteAt(descriptor, view.content, 0)) &&
           CutTo(descriptor, view.content.size());
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
