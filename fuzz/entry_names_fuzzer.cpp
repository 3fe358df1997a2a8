// The archive's entry names, whatever the root, the paths and the names that
// CZipper is given, and whatever the names in the folders that it walks: an
// unpacking program puts every entry inside the folder that it unpacks into.
// No name begins with "\" or "/" or names a drive, and none climbs out with a
// ".." component. The target reads the names back from the finished archive.
//
// The files that CZipper may read are those of a small tree in a temporary
// folder: a path that would lead anywhere else is not given to it.
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "FuzzSupport.h"
#include "platform/FileSystem.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"
#include "unzip.h"
#include "zip/CZipper.h"

namespace fs = std::filesystem;

namespace {

// The largest number of adds to one archive.
constexpr int kMostAdds = 4;

TestMachine& Machine()
{
    static TestMachine machine;
    return machine;
}

std::string TreeFolder()
{
    return Machine().Root() + "\\tree";
}

// Names that only POSIX lets a folder hold, beside ordinary ones: a drive, and
// backslashes that a Windows reader takes for separators.
void LayDownTree()
{
    const fs::path tree = platform::SystemPath(TreeFolder());
    fs::create_directories(tree / "sub" / "deeper");
    fs::create_directories(tree / "E:");
    fs::create_directories(tree / "q\\..\\..\\w");
    fs::create_directories(tree / ".hidden");
    for (const char* name : {"a.txt", "sub/b.txt", "sub/deeper/c.txt", "E:/d.txt", "C:x", " lead.txt"})
        WriteWholeFile((tree / name).string(), name);
}

const std::vector<std::string> kRelativePaths = {
    "a.txt", ".\\a.txt", "..\\a.txt", "sub\\b.txt", "sub\\..\\a.txt", " \\a.txt", "\\a.txt",
    "E:", "E:\\d.txt", "C:x", "sub", ".", "..", "q\\..\\..\\w", ".\\..\\tree\\a.txt"};

// A path as the fuzzer chooses it: below the tree, relative, or its own.
std::string PickPath(FuzzedDataProvider& data)
{
    switch (data.ConsumeIntegralInRange(0, 2)) {
    case 0:
        return TreeFolder() + PickText(data, {"\\a.txt", "\\sub", "\\sub\\..\\a.txt", "\\..\\tree"}, 40);
    case 1:
        return PickText(data, kRelativePaths, 40);
    default:
        return AsCString(data.ConsumeRandomLengthString(80));
    }
}

std::string PickRoot(FuzzedDataProvider& data)
{
    return data.ConsumeBool() ? TreeFolder() + PickText(data, {"", "\\", "\\sub", " ", "\\E:"}, 20)
                              : PickPath(data);
}

bool IsInside(const fs::path& path, const fs::path& folder)
{
    const std::string text = path.string();
    const std::string prefix = folder.string() + "/";
    return text == folder.string() || text.compare(0, prefix.size(), prefix) == 0;
}

// Whether the path, resolved as CZipper resolves it, lies in the tree.
bool LeadsIntoTree(CZipper& zipper, const std::string& path)
{
    if (path.size() >= CZipper::kPathBufferSize)
        return true;
    char resolved[CZipper::kPathBufferSize] = {};
    path.copy(resolved, path.size());
    zipper.ResolveSourcePath(resolved);
    std::error_code failed;
    const fs::path tree = fs::weakly_canonical(platform::SystemPath(TreeFolder()), failed);
    const fs::path target = fs::weakly_canonical(platform::SystemPath(resolved), failed);
    return !failed && IsInside(target, tree);
}

void AddOne(FuzzedDataProvider& data, CZipper& zipper)
{
    const std::string path = PickPath(data);
    const bool ignorePath = data.ConsumeBool();
    switch (data.ConsumeIntegralInRange(0, 3)) {
    case 0:
        if (LeadsIntoTree(zipper, path))
            zipper.AddFile(path.c_str(), ignorePath);
        break;
    case 1:
        if (LeadsIntoTree(zipper, path))
            zipper.AddFolder(path.c_str(), ignorePath);
        break;
    case 2: {
        const std::string folderInZip = PickText(data, {"logs", "..", "\\", "..\\..", "C:"}, 20);
        if (LeadsIntoTree(zipper, path))
            zipper.AddFileAs(path.c_str(), folderInZip.c_str());
        break;
    }
    default:
        zipper.AddBuffer(path.data(), static_cast<std::uint32_t>(path.size()), path.c_str());
        break;
    }
}

bool NamesADrive(const std::string& name)
{
    return name.size() >= 2 && std::isalpha(static_cast<unsigned char>(name[0])) && name[1] == ':';
}

bool ClimbsOut(const std::string& name)
{
    std::size_t begin = 0;
    while (begin <= name.size()) {
        const std::size_t end = std::min(name.find_first_of("\\/", begin), name.size());
        if (name.compare(begin, end - begin, "..") == 0 && end - begin == 2)
            return true;
        begin = end + 1;
    }
    return false;
}

// The end record alone: minizip's reader looks for it past the archive's first
// byte, so it doesn't open an archive without entries.
constexpr std::uintmax_t kEmptyArchiveSize = 22;

void CheckEntryNames(const std::string& archive)
{
    unzFile reader = unzOpen(platform::SystemPath(archive).c_str());
    if (reader == nullptr) {
        Require(fs::file_size(platform::SystemPath(archive)) == kEmptyArchiveSize,
                "a finished archive with entries can be read");
        return;
    }
    for (int more = unzGoToFirstFile(reader); more == UNZ_OK; more = unzGoToNextFile(reader)) {
        unz_file_info info;
        char name[1024] = {};
        unzGetCurrentFileInfo(reader, &info, name, sizeof name - 1, nullptr, 0, nullptr, 0);
        const std::string text(name);
        Require(text.empty() || (text[0] != '\\' && text[0] != '/'),
                "no entry name begins with a separator: " + text);
        Require(!NamesADrive(text), "no entry name begins with a drive: " + text);
        Require(!ClimbsOut(text), "no entry name climbs out with ..: " + text);
    }
    unzClose(reader);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    LayDownTree();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    const std::string archive = Machine().Root() + "\\entries.zip";
    const bool noRoot = data.ConsumeIntegralInRange(0, 7) == 0;
    const std::string root = PickRoot(data);
    CZipper zipper(nullptr, nullptr, false);
    if (!zipper.Open(archive.c_str(), noRoot ? nullptr : root.c_str(), false))
        return 0;
    for (int add = 0; add < kMostAdds && data.remaining_bytes() > 0; ++add)
        AddOne(data, zipper);
    zipper.Close();
    CheckEntryNames(archive);
    return 0;
}
