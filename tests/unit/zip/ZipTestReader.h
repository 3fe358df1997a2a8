// A small reader of an archive's central directory, for tests only: the names,
// order, sizes, checksums, attributes and dates of the entries as stored, and
// each entry's stored (compressed) bytes. The data itself is checked through
// the checksum (and by the independent readers that run over every kept
// archive).
#pragma once

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/FileSystem.h"

struct ZipTestEntry {
    std::string name;
    std::uint16_t versionMadeBy = 0;
    std::uint16_t method = 0;
    std::uint16_t dosTime = 0;
    std::uint16_t dosDate = 0;
    std::uint32_t crc = 0;
    std::uint32_t compressedSize = 0;
    std::uint32_t uncompressedSize = 0;
    std::uint16_t internalAttributes = 0;
    std::uint32_t externalAttributes = 0;
    std::uint32_t localHeaderOffset = 0;
    std::string data;  // the stored bytes, as compressed
};

struct ZipTestArchive {
    bool valid = false;  // an end-of-directory record was found and the directory read
    std::vector<ZipTestEntry> entries;

    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const ZipTestEntry& entry : entries)
            names.push_back(entry.name);
        return names;
    }

    const ZipTestEntry* Find(const std::string& name) const
    {
        for (const ZipTestEntry& entry : entries) {
            if (entry.name == name)
                return &entry;
        }
        return nullptr;
    }
};

namespace ziptest {

inline std::uint32_t Little(const std::string& bytes, std::size_t at, int width)
{
    std::uint32_t value = 0;
    for (int i = width - 1; i >= 0; --i)
        value = (value << 8) | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    return value;
}

inline bool FindEndRecord(const std::string& bytes, std::size_t& at)
{
    if (bytes.size() < 22)
        return false;
    for (std::size_t i = bytes.size() - 22 + 1; i-- > 0;) {
        if (Little(bytes, i, 4) == 0x06054b50u) {
            at = i;
            return true;
        }
    }
    return false;
}

inline bool ReadCentralEntry(const std::string& bytes, std::size_t& at, ZipTestEntry& entry)
{
    if (at + 46 > bytes.size() || Little(bytes, at, 4) != 0x02014b50u)
        return false;
    entry.versionMadeBy = static_cast<std::uint16_t>(Little(bytes, at + 4, 2));
    entry.method = static_cast<std::uint16_t>(Little(bytes, at + 10, 2));
    entry.dosTime = static_cast<std::uint16_t>(Little(bytes, at + 12, 2));
    entry.dosDate = static_cast<std::uint16_t>(Little(bytes, at + 14, 2));
    entry.crc = Little(bytes, at + 16, 4);
    entry.compressedSize = Little(bytes, at + 20, 4);
    entry.uncompressedSize = Little(bytes, at + 24, 4);
    const std::size_t nameLength = Little(bytes, at + 28, 2);
    const std::size_t extraLength = Little(bytes, at + 30, 2);
    const std::size_t commentLength = Little(bytes, at + 32, 2);
    entry.internalAttributes = static_cast<std::uint16_t>(Little(bytes, at + 36, 2));
    entry.externalAttributes = Little(bytes, at + 38, 4);
    entry.localHeaderOffset = Little(bytes, at + 42, 4);
    if (at + 46 + nameLength > bytes.size())
        return false;
    entry.name = bytes.substr(at + 46, nameLength);
    at += 46 + nameLength + extraLength + commentLength;
    return true;
}

// The entry's stored bytes, which follow its local header.
inline bool ReadEntryData(const std::string& bytes, ZipTestEntry& entry)
{
    const std::size_t at = entry.localHeaderOffset;
    if (at + 30 > bytes.size() || Little(bytes, at, 4) != 0x04034b50u)
        return false;
    const std::size_t start = at + 30 + Little(bytes, at + 26, 2) + Little(bytes, at + 28, 2);
    if (start + entry.compressedSize > bytes.size())
        return false;
    entry.data = bytes.substr(start, entry.compressedSize);
    return true;
}

}  // namespace ziptest

inline ZipTestArchive ReadZipDirectory(const std::string& zipPath)
{
    ZipTestArchive archive;
    std::ifstream in(platform::SystemPath(zipPath), std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::size_t end = 0;
    if (!ziptest::FindEndRecord(bytes, end))
        return archive;
    const std::uint32_t count = ziptest::Little(bytes, end + 10, 2);
    std::size_t at = ziptest::Little(bytes, end + 16, 4);
    for (std::uint32_t i = 0; i < count; ++i) {
        ZipTestEntry entry;
        if (!ziptest::ReadCentralEntry(bytes, at, entry) || !ziptest::ReadEntryData(bytes, entry))
            return archive;
        archive.entries.push_back(entry);
    }
    archive.valid = true;
    return archive;
}

// CRC-32 of the zip format (polynomial 0xEDB88320), worked out bit by bit.
inline std::uint32_t ZipCrc32(const std::string& data)
{
    std::uint32_t crc = 0xFFFFFFFFu;
    for (unsigned char byte : data) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1u) ? (crc >> 1) ^ 0xEDB88320u : crc >> 1;
    }
    return crc ^ 0xFFFFFFFFu;
}

// Date and time words of the DOS form, as a zip entry stores them.
inline std::uint16_t DosDateOf(const platform::CalendarTime& time)
{
    return static_cast<std::uint16_t>(((time.year - 1980) << 9) | (time.month << 5) | time.day);
}

inline std::uint16_t DosTimeOf(const platform::CalendarTime& time)
{
    return static_cast<std::uint16_t>((time.hour << 11) | (time.minute << 5) | (time.second / 2));
}
