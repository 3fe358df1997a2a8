#include "report/CLocalHeaderReader.h"

#include <zlib.h>

#include <algorithm>
#include <vector>

#include "platform/FileSystem.h"
#include "report/SourceNames.h"

namespace {

constexpr std::uint32_t kLocalHeaderSignature = 0x04034b50;
constexpr std::uint32_t kCentralHeaderSignature = 0x02014b50;
constexpr std::size_t kLocalHeaderSize = 30;
constexpr std::uint16_t kDataDescriptorFlag = 0x8;
constexpr std::uint16_t kZip64ExtraId = 0x0001;
constexpr std::uint32_t kZip64Marker = 0xFFFFFFFFu;
constexpr std::uint16_t kStored = 0;
constexpr std::uint16_t kDeflated = 8;
constexpr std::size_t kBlockSize = 64 * 1024;

std::uint64_t Little(const char* bytes, std::size_t size)
{
    std::uint64_t value = 0;
    for (std::size_t i = size; i-- > 0;)
        value = (value << 8) | static_cast<unsigned char>(bytes[i]);
    return value;
}

// The sizes from a ZIP64 extra field, where the header's own say 0xFFFFFFFF.
void TakeZip64Sizes(const std::string& extra, std::uint64_t& size, std::uint64_t& compressedSize)
{
    for (std::size_t at = 0; at + 4 <= extra.size();) {
        const std::uint64_t id = Little(&extra[at], 2);
        const std::size_t length = static_cast<std::size_t>(Little(&extra[at + 2], 2));
        std::size_t field = at + 4;
        if (id == kZip64ExtraId) {
            if (size == kZip64Marker && field + 8 <= extra.size()) {
                size = Little(&extra[field], 8);
                field += 8;
            }
            if (compressedSize == kZip64Marker && field + 8 <= extra.size())
                compressedSize = Little(&extra[field], 8);
            return;
        }
        at = field + length;
    }
}

// Inflates or copies an entry's data block by block, with its checksum.
class CEntryData {
public:
    explicit CEntryData(std::uint16_t method) : method_(method)
    {
        if (method_ == kDeflated)
            good_ = inflateInit2(&stream_, -MAX_WBITS) == Z_OK;
    }
    ~CEntryData()
    {
        if (method_ == kDeflated)
            inflateEnd(&stream_);
    }
    CEntryData(const CEntryData&) = delete;
    CEntryData& operator=(const CEntryData&) = delete;

    // Hands over what the block gives, up to `limit` bytes in all.
    void Take(const char* bytes, std::size_t size, std::uint64_t limit,
              const CLocalHeaderReader::BlockHandler& handler)
    {
        if (method_ == kStored)
            return Hand(bytes, size, limit, handler);
        stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes));
        stream_.avail_in = static_cast<uInt>(size);
        // A full output block may leave more to come from the input taken.
        bool full = true;
        while (good_ && !ended_ && total_ < limit && (stream_.avail_in != 0 || full)) {
            stream_.next_out = reinterpret_cast<Bytef*>(out_.data());
            stream_.avail_out = static_cast<uInt>(out_.size());
            const int status = inflate(&stream_, Z_NO_FLUSH);
            good_ = status == Z_OK || status == Z_STREAM_END || status == Z_BUF_ERROR;
            ended_ = status == Z_STREAM_END;
            full = stream_.avail_out == 0;
            Hand(out_.data(), out_.size() - stream_.avail_out, limit, handler);
            if (status == Z_BUF_ERROR)
                break;
        }
    }
    bool Whole(std::uint32_t crc) const { return good_ && (method_ == kStored || ended_) && crc_ == crc; }
    bool LimitReached(std::uint64_t limit) const { return good_ && total_ >= limit; }

private:
    void Hand(const char* bytes, std::size_t size, std::uint64_t limit, const CLocalHeaderReader::BlockHandler& handler)
    {
        const std::size_t used = static_cast<std::size_t>(std::min<std::uint64_t>(size, limit - total_));
        crc_ = static_cast<std::uint32_t>(crc32(crc_, reinterpret_cast<const Bytef*>(bytes), static_cast<uInt>(size)));
        if (used != 0)
            handler(bytes, used);
        total_ += used;
    }

    std::uint16_t method_;
    z_stream stream_{};
    std::vector<char> out_ = std::vector<char>(kBlockSize);
    bool good_ = true;
    bool ended_ = false;
    std::uint32_t crc_ = 0;
    std::uint64_t total_ = 0;
};

}  // namespace

bool CLocalHeaderReader::Open(const std::string& path)
{
    if (!platform::OpenFileBuffer(file_, path, std::ios_base::in | std::ios_base::binary))
        return false;
    const std::streampos end = file_.pubseekoff(0, std::ios_base::end);
    if (end == std::streampos(-1))
        return false;
    fileSize_ = static_cast<std::uint64_t>(static_cast<std::streamoff>(end));
    std::uint64_t offset = 0;
    while (ReadEntryAt(offset)) {
    }
    return !entries_.empty() || !cutOff_.empty();
}

bool CLocalHeaderReader::ReadBytes(std::uint64_t offset, char* bytes, std::size_t size) const
{
    return offset + size <= fileSize_ &&
           file_.pubseekpos(static_cast<std::streamoff>(offset)) != std::streampos(-1) &&
           file_.sgetn(bytes, static_cast<std::streamsize>(size)) == static_cast<std::streamsize>(size);
}

// The entry whose local header stands at `offset`; false where the walk ends.
bool CLocalHeaderReader::ReadEntryAt(std::uint64_t& offset)
{
    char header[kLocalHeaderSize];
    if (!ReadBytes(offset, header, sizeof header) || Little(header, 4) != kLocalHeaderSignature) {
        const bool directory = ReadBytes(offset, header, 4) && Little(header, 4) == kCentralHeaderSignature;
        walkEnd_ = directory ? std::string() : "no entry header at byte " + std::to_string(offset);
        return false;
    }
    const std::uint16_t flags = static_cast<std::uint16_t>(Little(header + 6, 2));
    Entry entry;
    entry.method = static_cast<std::uint16_t>(Little(header + 8, 2));
    entry.crc = static_cast<std::uint32_t>(Little(header + 14, 4));
    entry.compressedSize = Little(header + 18, 4);
    entry.size = Little(header + 22, 4);
    std::string name(static_cast<std::size_t>(Little(header + 26, 2)), '\0');
    std::string extra(static_cast<std::size_t>(Little(header + 28, 2)), '\0');
    const std::uint64_t nameAt = offset + kLocalHeaderSize;
    if (!ReadBytes(nameAt, &name[0], name.size()) || !ReadBytes(nameAt + name.size(), &extra[0], extra.size())) {
        walkEnd_ = "the header at byte " + std::to_string(offset) + " is cut off";
        return false;
    }
    TakeZip64Sizes(extra, entry.size, entry.compressedSize);
    entry.dataOffset = nameAt + name.size() + extra.size();
    if ((flags & kDataDescriptorFlag) != 0 && entry.compressedSize == 0) {
        walkEnd_ = "the size of " + name + " is not in its header";
        return false;
    }
    entry.cutOff = entry.dataOffset + entry.compressedSize > fileSize_;
    if (entry.cutOff)
        cutOff_.push_back(name);
    // The first entry of a name wins; folders, and names that nothing can
    // look up, are left out.
    const bool folder = !name.empty() && (name.back() == '/' || name.back() == '\\');
    const std::string lookupName = EntryLookupName(name);
    if (!folder && !lookupName.empty() && entries_.emplace(lookupName, entry).second)
        fileNames_.push_back(name);
    offset = entry.dataOffset + entry.compressedSize;
    return !entry.cutOff;
}

bool CLocalHeaderReader::Contains(const std::string& lookupName) const
{
    return !lookupName.empty() && entries_.count(lookupName) != 0;
}

std::optional<std::uint64_t> CLocalHeaderReader::DeclaredSize(const std::string& lookupName) const
{
    const auto found = entries_.find(lookupName);
    if (lookupName.empty() || found == entries_.end())
        return std::nullopt;
    return found->second.size;
}

bool CLocalHeaderReader::Stream(const std::string& lookupName, std::uint64_t limit,
                                const BlockHandler& handler) const
{
    const auto found = entries_.find(lookupName);
    if (lookupName.empty() || found == entries_.end())
        return false;
    const Entry& entry = found->second;
    if (entry.method != kStored && entry.method != kDeflated)
        return false;
    CEntryData data(entry.method);
    std::vector<char> block(kBlockSize);
    const std::uint64_t stored = std::min(entry.compressedSize, fileSize_ - entry.dataOffset);
    for (std::uint64_t at = 0; at < stored && !data.LimitReached(limit);) {
        const std::size_t size = static_cast<std::size_t>(std::min<std::uint64_t>(kBlockSize, stored - at));
        if (!ReadBytes(entry.dataOffset + at, block.data(), size))
            return false;
        data.Take(block.data(), size, limit, handler);
        at += size;
    }
    return data.LimitReached(limit) || (!entry.cutOff && data.Whole(entry.crc));
}
