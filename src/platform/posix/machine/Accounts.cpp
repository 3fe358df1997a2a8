// The logged-on user and the groups on POSIX systems. The user is the
// effective user, in the domain of the computer's own name, as for a local
// account on Windows. The local groups are the group database in its own
// order, and a group's members are the users it lists, each qualified by the
// computer name as NetLocalGroupGetMembers gives them. There are no global
// groups: their calls answer ERROR_NOT_SUPPORTED (50), as the network calls do
// where a feature isn't there.
#include "platform/Accounts.h"
#include "platform/common/NameAnswer.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>


#include "platform/ComputerName.h"
#include "platform/TextConversion.h"

namespace platform {

namespace {

std::string ComputerName()
{
    char buffer[256] = {};
    std::uint32_t length = sizeof buffer - 1;
    if (!QueryComputerName(buffer, length))
        return std::string();
    return std::string(buffer);
}

std::string EffectiveUserName()
{
    const struct passwd* entry = getpwuid(geteuid());
    if (entry == nullptr || entry->pw_name == nullptr)
        return std::string();
    return std::string(entry->pw_name);
}

std::u16string Wide(const std::string& text)
{
    std::u16string wide;
    NarrowToWide(text, text.size() * 2 + 2, wide);
    return wide;
}

std::string Narrow(const std::u16string& wide)
{
    std::vector<char> buffer(wide.size() * 4 + 4, '\0');
    if (WideToNarrow(wide, buffer.data(), static_cast<int>(buffer.size())) != 0)
        return std::string();
    return std::string(buffer.data());
}

}  // namespace

bool QueryUserNameEx(std::uint32_t format, char* buffer, std::size_t bufferSize,
                     std::uint32_t& length)
{
    const std::string user = EffectiveUserName();
    if (format != kNameSamCompatible || user.empty())
        return false;
    const std::string name = ComputerName() + "\\" + user;
    return AnswerUserName(name, buffer, bufferSize, length);
}

std::uint32_t GetWorkstationUser(bool& answered, WorkstationUser& user)
{
    const std::string name = EffectiveUserName();
    answered = !name.empty();
    if (!answered)
        return kNetWorkstationNotStarted;
    const std::u16string computer = Wide(ComputerName());
    user.userName = Wide(name);
    user.logonDomain = computer;
    user.logonServer = computer;
    return kNetSuccess;
}

std::uint32_t EnumLocalGroups(const std::u16string&, std::vector<std::u16string>& names)
{
    names.clear();
    setgrent();
    while (const struct group* entry = getgrent()) {
        if (entry->gr_name != nullptr)
            names.push_back(Wide(entry->gr_name));
    }
    endgrent();
    return kNetSuccess;
}

std::uint32_t EnumGlobalGroups(const std::u16string&, std::vector<std::u16string>& names)
{
    names.clear();
    return kNetNotSupported;
}

std::uint32_t GetLocalGroupMembers(const std::u16string&, const std::u16string& group,
                                   std::vector<std::u16string>& names)
{
    names.clear();
    const struct group* entry = getgrnam(Narrow(group).c_str());
    if (entry == nullptr)
        return kNetGroupNotFound;
    const std::string domain = ComputerName();
    for (char** member = entry->gr_mem; member != nullptr && *member != nullptr; ++member)
        names.push_back(Wide(domain + "\\" + *member));
    return kNetSuccess;
}

std::uint32_t GetGlobalGroupUsers(const std::u16string&, const std::u16string&,
                                  std::vector<std::u16string>& names)
{
    names.clear();
    return kNetNotSupported;
}

}  // namespace platform
