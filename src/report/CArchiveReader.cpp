#include "report/CArchiveReader.h"

#include <unzip.h>

#include <algorithm>
#include <vector>

#include "platform/FileSystem.h"
#include "report/CBlockPipe.h"
#include "report/SourceNames.h"

namespace {

// Blocks of 64 KB: few calls, and the same size as the archive run's reads.
constexpr unsigned kBlockSize = 64 * 1024;
// An entry's name is read into a buffer of this size; a longer name is cut.
constexpr unsigned kEntryNameLimit = 4096;

int InflateHere(std::size_t blockSize, const CBlockPipe::Producer& produce, const CBlockPipe::Consumer& consume)
{
    std::vector<char> block(blockSize);
    int read = 0;
    while ((read = produce(block.data(), block.size())) > 0 && consume(block.data(), static_cast<std::size_t>(read))) {
    }
    return read;
}

bool IsFolderEntry(const std::string& name)
{
    return !name.empty() && (name.back() == '/' || name.back() == '\\');
}

}  // namespace

CArchiveReader::~CArchiveReader()
{
    if (archive_ != nullptr)
        unzClose(static_cast<unzFile>(archive_));
}

bool CArchiveReader::Open(const std::string& path)
{
    archive_ = unzOpen64(platform::SystemPath(path).c_str());
    if (archive_ == nullptr)
        return false;
    if (IndexEntries())
        return true;
    unzClose(static_cast<unzFile>(archive_));
    archive_ = nullptr;
    entries_.clear();
    fileNames_.clear();
    return false;
}

// The first entry of a name wins; folders are left out. False if the walk
// over the central directory doesn't reach its end: it is damaged.
bool CArchiveReader::IndexEntries()
{
    const unzFile archive = static_cast<unzFile>(archive_);
    std::vector<char> name(kEntryNameLimit + 1);
    int status = unzGoToFirstFile(archive);
    for (; status == UNZ_OK; status = unzGoToNextFile(archive)) {
        unz_file_info64 info;
        if (unzGetCurrentFileInfo64(archive, &info, name.data(), kEntryNameLimit, nullptr, 0, nullptr,
                                    0) != UNZ_OK)
            continue;
        name[kEntryNameLimit] = '\0';
        const std::string entryName(name.data());
        unz64_file_pos position;
        if (IsFolderEntry(entryName) || unzGetFilePos64(archive, &position) != UNZ_OK)
            continue;
        if (entries_.emplace(EntryLookupName(entryName), Position{position.pos_in_zip_directory, position.num_of_file, info.uncompressed_size})
                .second)
            fileNames_.push_back(entryName);
    }
    return status == UNZ_END_OF_LIST_OF_FILE;
}

bool CArchiveReader::Contains(const std::string& lookupName) const
{
    return !lookupName.empty() && entries_.count(lookupName) != 0;
}

std::optional<std::uint64_t> CArchiveReader::DeclaredSize(const std::string& lookupName) const
{
    const auto found = entries_.find(lookupName);
    if (lookupName.empty() || found == entries_.end())
        return std::nullopt;
    return found->second.size;
}

bool CArchiveReader::Stream(const std::string& lookupName, std::uint64_t limit,
                            const BlockHandler& handler) const
{
    const auto found = entries_.find(lookupName);
    if (lookupName.empty() || found == entries_.end())
        return false;
    const unzFile archive = static_cast<unzFile>(archive_);
    const unz64_file_pos position{found->second.directoryOffset, found->second.fileNumber};
    unz_file_info64 info;
    if (unzGoToFilePos64(archive, &position) != UNZ_OK ||
        unzGetCurrentFileInfo64(archive, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK ||
        unzOpenCurrentFile(archive) != UNZ_OK)
        return false;
    std::uint64_t total = 0;
    // Where the deflated data is damaged, the bytes inflated ahead of the
    // damage in that block are handed over first, and the damage is told at
    // the next call.
    int damage = 0;
    const auto produce = [archive, &damage](char* block, std::size_t capacity) {
        if (damage != 0)
            return damage;
        const ZPOS64_T before = unztell64(archive);
        const int read = unzReadCurrentFile(archive, block, static_cast<unsigned>(capacity));
        const ZPOS64_T inflated = unztell64(archive) - before;
        if (read >= 0 || inflated == 0 || inflated > capacity)
            return read;
        damage = read;
        return static_cast<int>(inflated);
    };
    const auto consume = [&handler, &total, limit](const char* bytes, std::size_t size) {
        const std::size_t used = static_cast<std::size_t>(std::min<std::uint64_t>(size, limit - total));
        handler(bytes, used);
        total += used;
        return total < limit;
    };
    int read = 0;
    // The report reads the logs that are inflated here ahead on a thread of
    // their own already: a hand-over between threads for each block of them
    // would cost more than it saves. The block is no larger than the limit,
    // so that no more is inflated than is handed over.
    if (limit != 0 && info.uncompressed_size <= kInflatedHereUpTo)
        read = InflateHere(static_cast<std::size_t>(std::min<std::uint64_t>(kBlockSize, limit)), produce, consume);
    else if (limit != 0)
        read = CBlockPipe::Run(kBlockSize, produce, consume);
    // A checksum that doesn't match shows only at the close, and only when the
    // whole entry was read: deflated data that ends before the entry's size,
    // as damaged data may, is damage too.
    const int closed = unzCloseCurrentFile(archive);
    return read >= 0 && (total >= limit || (closed == UNZ_OK && total == info.uncompressed_size));
}
