#include "support/TestFiles.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "platform/FileSystem.h"

namespace fs = std::filesystem;

std::string ReadWholeFile(const std::string& path)
{
    std::ifstream in(platform::SystemPath(path), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteWholeFile(const std::string& path, const std::string& content)
{
    std::ofstream out(platform::SystemPath(path), std::ios::binary | std::ios::trunc);
    out << content;
}

bool PathExists(const std::string& path)
{
    std::error_code ignored;
    return fs::exists(platform::SystemPath(path), ignored);
}

bool MakeSymbolicLink(const std::string& target, const std::string& link, bool folder)
{
    std::error_code failed;
    if (folder)
        fs::create_directory_symlink(platform::SystemPath(target), platform::SystemPath(link), failed);
    else
        fs::create_symlink(platform::SystemPath(target), platform::SystemPath(link), failed);
    return !failed;
}

void MakeFolders(const std::string& path)
{
    fs::create_directories(platform::SystemPath(path));
}

void SetWritable(const std::string& path, bool writable)
{
    const fs::perms write = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    std::error_code ignored;
    fs::permissions(platform::SystemPath(path), write,
                    writable ? fs::perm_options::add : fs::perm_options::remove, ignored);
}

std::vector<std::string> FolderNames(const std::string& path)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(platform::SystemPath(path))) {
        const std::string name = entry.path().filename().string();
        if (name[0] != '.')
            names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string TextLines(std::initializer_list<std::string> lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + platform::kTextLineEnd;
    return text;
}

std::string WithPlatformLineEnds(const std::string& text)
{
    std::string result;
    for (char c : text) {
        if (c == '\n')
            result += platform::kTextLineEnd;
        else
            result += c;
    }
    return result;
}

void KeepArchiveForCheck(const std::string& zipPath, const std::string& name)
{
    const char* folder = std::getenv("ZOR_TEST_ARCHIVE_DIR");
    if (folder == nullptr || *folder == '\0')
        return;
    fs::create_directories(folder);
    std::error_code ignored;
    fs::copy_file(platform::SystemPath(zipPath), fs::path(folder) / (name + ".zip"),
                  fs::copy_options::overwrite_existing, ignored);
}
