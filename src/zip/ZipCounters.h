// What went into an archive since it was opened.
#pragma once

#include <cstdint>

struct ZipCounters {
    std::uint32_t fileCount = 0;          // file entries begun
    std::uint32_t folderCount = 0;        // folders walked, the root and failed ones too
    std::uint32_t uncompressedBytes = 0;  // bytes read from files and buffers
};
