#include "report/SourceNames.h"

#include "platform/common/AsciiCase.h"

namespace {

bool IsSeparator(char c)
{
    return c == '/' || c == '\\';
}

std::string Folded(const std::string& name)
{
    std::string folded = name;
    for (char& c : folded) {
        if (c == '\\')
            c = '/';
    }
    return platform::FoldedAsciiText(folded);
}

// Whether any part between separators is "..".
bool ClimbsOut(const std::string& name)
{
    std::string::size_type start = 0;
    while (start <= name.size()) {
        std::string::size_type end = name.find('/', start);
        if (end == std::string::npos)
            end = name.size();
        if (name.compare(start, end - start, "..") == 0)
            return true;
        start = end + 1;
    }
    return false;
}

}  // namespace

std::string LookupName(const std::string& relativeName)
{
    if (relativeName.empty() || IsSeparator(relativeName[0]) ||
        relativeName.find(':') != std::string::npos)
        return std::string();
    std::string name = Folded(relativeName);
    while (name.compare(0, 2, "./") == 0)
        name.erase(0, 2);
    if (name.empty() || ClimbsOut(name))
        return std::string();
    return name;
}

std::string EntryLookupName(const std::string& entryName)
{
    std::string name = Folded(entryName);
    while (name.compare(0, 2, "./") == 0)
        name.erase(0, 2);
    return name;
}
