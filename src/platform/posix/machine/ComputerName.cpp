// The computer name on POSIX systems: the host name up to its first dot, in
// upper case, as a NetBIOS name is shown. As with GetComputerNameA, the name
// and its terminator must fit the length word, so a name of 15 characters or
// more fails with a length word of 15.
#include "platform/ComputerName.h"

#include <unistd.h>

#include <cstring>
#include <string>

namespace platform {

namespace {

std::string NetBiosName()
{
    char host[256] = {};
    if (gethostname(host, sizeof host - 1) != 0)
        return std::string();
    std::string name(host, strnlen(host, sizeof host));
    name = name.substr(0, name.find('.'));
    for (char& c : name) {
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
    }
    return name;
}

}  // namespace

bool QueryComputerName(char* buffer, std::uint32_t& length)
{
    const std::string name = NetBiosName();
    if (name.empty() || name.size() + 1 > length) {
        length = static_cast<std::uint32_t>(name.size() + 1);
        return false;
    }
    std::memcpy(buffer, name.c_str(), name.size() + 1);
    length = static_cast<std::uint32_t>(name.size());
    return true;
}

}  // namespace platform
