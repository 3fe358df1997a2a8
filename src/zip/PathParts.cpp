#include "zip/PathParts.h"

#include <cstring>

namespace {

bool IsAsciiLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace

bool BeginsWithDrive(const char* path)
{
    return IsAsciiLetter(path[0]) && path[1] == ':';
}

bool IsSeparator(char c)
{
    return c == '\\' || c == '/';
}

namespace {

bool HasParentComponent(const std::string& name)
{
    std::size_t start = 0;
    for (;;) {
        std::size_t end = start;
        while (end < name.size() && !IsSeparator(name[end]))
            ++end;
        if (name.compare(start, end - start, "..") == 0)
            return true;
        if (end == name.size())
            return false;
        start = end + 1;
    }
}

}  // namespace

bool StaysInsideFolder(const std::string& name)
{
    return (name.empty() || !IsSeparator(name[0])) && !BeginsWithDrive(name.c_str()) &&
           !HasParentComponent(name);
}

PathParts SplitPath(const char* path)
{
    PathParts parts;
    if (path == nullptr)
        return parts;
    std::string rest(path);
    if (BeginsWithDrive(rest.c_str())) {
        parts.drive = rest.substr(0, 2);
        rest.erase(0, 2);
    }
    const std::size_t lastSeparator = rest.find_last_of("\\/");
    if (lastSeparator != std::string::npos) {
        parts.directory = rest.substr(0, lastSeparator + 1);
        rest.erase(0, lastSeparator + 1);
    }
    const std::size_t lastDot = rest.rfind('.');
    if (lastDot != std::string::npos) {
        parts.extension = rest.substr(lastDot);
        rest.erase(lastDot);
    }
    parts.name = rest;
    return parts;
}

std::string MakePath(const std::string& drive, const std::string& directory,
                     const std::string& name, const std::string& extension)
{
    std::string path = drive + directory;
    if (!directory.empty() && !IsSeparator(directory.back()))
        path += '\\';
    path += name;
    if (!extension.empty() && extension.front() != '.')
        path += '.';
    return path + extension;
}

bool StorePath(char* buffer, std::size_t size, const std::string& text)
{
    if (buffer == nullptr || size == 0)
        return false;
    if (text.size() >= size) {
        buffer[0] = '\0';
        return false;
    }
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return true;
}
