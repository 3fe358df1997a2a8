// The report's reader of a zip archive by its local headers, which takes
// over where minizip can't open an archive (its central directory cut off or
// damaged), over any bytes as the archive's file.
//
// The input is written to a file in the run's temporary folder and opened.
// What must hold:
//   - no fault, no exception, whatever the headers' sizes, names and methods;
//   - each file entry that the walk found can be streamed, within the limit
//     asked for, and hands over no more than that;
//   - what an entry gives whole is no more than deflating can make of the
//     file's bytes;
//   - a name that the walk didn't find is not there.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "FuzzSupport.h"
#include "report/CLocalHeaderReader.h"
#include "report/SourceNames.h"

namespace {

constexpr std::uint64_t kLimit = 1 << 20;

std::string ScratchFile()
{
    const char* folder = std::getenv("TMPDIR");
    return std::string(folder != nullptr ? folder : "/tmp") + "/local_headers_input.zip";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string path = ScratchFile();
    std::FILE* file = std::fopen(path.c_str(), "wb");
    Require(file != nullptr, "the input can be written to a file");
    Require(std::fwrite(bytes, 1, size, file) == size && std::fclose(file) == 0, "the input is written whole");
    {
        CLocalHeaderReader reader;
        if (reader.Open(path)) {
            for (const std::string& name : reader.FileNames()) {
                Require(reader.Contains(EntryLookupName(name)), "a file the walk found is there");
                std::uint64_t handed = 0;
                const bool whole = reader.Stream(EntryLookupName(name), kLimit,
                                                 [&handed](const char*, std::size_t block) { handed += block; });
                Require(handed <= kLimit, "no more is handed over than the limit");
                Require(!whole || handed == kLimit || handed <= size * 1032 + 64,
                        "a whole entry gives no more than deflate can make of the file's bytes");
            }
            Require(!reader.Contains("no/such/entry\\x"), "a name the walk didn't find is not there");
        }
    }
    std::remove(path.c_str());
    return 0;
}
