// The logged-on user and the users and groups on Windows, through secur32.dll
// and netapi32.dll.
#define SECURITY_WIN32
#include "platform/Accounts.h"

#include <windows.h>
#include <lm.h>
#include <security.h>

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <vector>

namespace platform {

namespace {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "wide text is UTF-16 on Windows");
static_assert(NameSamCompatible == kNameSamCompatible, "the name format");
static_assert(std::is_same<NET_API_STATUS, DWORD>::value, "the status of the network calls");
static_assert(sizeof(ULONG) == sizeof(std::uint32_t), "the length word of GetUserNameExA");
static_assert(NERR_Success == kNetSuccess && ERROR_NOT_SUPPORTED == kNetNotSupported &&
                  NERR_GroupNotFound == kNetGroupNotFound &&
                  NERR_WkstaNotStarted == kNetWorkstationNotStarted,
              "statuses of the network calls");

std::u16string WideText(LPCWSTR text)
{
    if (text == nullptr)
        return std::u16string();
    return std::u16string(reinterpret_cast<const char16_t*>(text));
}

LPCWSTR WideArgument(const std::u16string& text)
{
    return reinterpret_cast<LPCWSTR>(text.c_str());
}

// The names of the entries read from an array of records of type Record.
template <typename Record>
void NamesOf(LPBYTE result, DWORD entriesRead, LPWSTR Record::*field,
             std::vector<std::u16string>& names)
{
    names.clear();
    if (result == nullptr)
        return;
    const Record* records = reinterpret_cast<const Record*>(result);
    for (DWORD i = 0; i < entriesRead; ++i)
        names.push_back(WideText(records[i].*field));
}

// NetLocalGroupEnum and NetGroupEnum: the result is freed after a status of 0
// only.
template <typename Record, typename Enumerate>
std::uint32_t EnumGroups(Enumerate enumerate, DWORD level, const std::u16string& server,
                         LPWSTR Record::*field, std::vector<std::u16string>& names)
{
    LPBYTE result = nullptr;
    DWORD entriesRead = 0;
    DWORD totalEntries = 0;
    DWORD_PTR resume = 0;
    const NET_API_STATUS status = enumerate(WideArgument(server), level, &result,
                                            MAX_PREFERRED_LENGTH, &entriesRead, &totalEntries,
                                            &resume);
    NamesOf(result, entriesRead, field, names);
    if (status == NERR_Success)
        NetApiBufferFree(result);
    return status;
}

// NetLocalGroupGetMembers and NetGroupGetUsers: the result is freed whatever
// the status.
template <typename Record, typename Enumerate>
std::uint32_t MembersOf(Enumerate enumerate, DWORD level, const std::u16string& server,
                        const std::u16string& group, LPWSTR Record::*field,
                        std::vector<std::u16string>& names)
{
    LPBYTE result = nullptr;
    DWORD entriesRead = 0;
    DWORD totalEntries = 0;
    DWORD_PTR resume = 0;
    const NET_API_STATUS status =
        enumerate(WideArgument(server), WideArgument(group), level, &result, MAX_PREFERRED_LENGTH,
                  &entriesRead, &totalEntries, &resume);
    NamesOf(result, entriesRead, field, names);
    NetApiBufferFree(result);
    return status;
}

}  // namespace

bool QueryUserNameEx(std::uint32_t format, char* buffer, std::size_t bufferSize,
                     std::uint32_t& length)
{
    std::vector<char> own(static_cast<std::size_t>(length) + 1, '\0');
    ULONG size = length;
    const BOOLEAN done =
        GetUserNameExA(static_cast<EXTENDED_NAME_FORMAT>(format), own.data(), &size);
    length = size;
    if (!done || bufferSize == 0)
        return done != FALSE;
    const std::size_t copied = std::min(std::strlen(own.data()), bufferSize - 1);
    std::memcpy(buffer, own.data(), copied);
    buffer[copied] = '\0';
    return true;
}

std::uint32_t GetWorkstationUser(bool& answered, WorkstationUser& user)
{
    LPBYTE result = nullptr;
    const NET_API_STATUS status = NetWkstaUserGetInfo(nullptr, 1, &result);
    answered = result != nullptr;
    if (result != nullptr) {
        const WKSTA_USER_INFO_1* info = reinterpret_cast<const WKSTA_USER_INFO_1*>(result);
        user.userName = WideText(info->wkui1_username);
        user.logonDomain = WideText(info->wkui1_logon_domain);
        user.logonServer = WideText(info->wkui1_logon_server);
        NetApiBufferFree(result);
    }
    return status;
}

std::uint32_t EnumLocalGroups(const std::u16string& server, std::vector<std::u16string>& names)
{
    return EnumGroups(NetLocalGroupEnum, 1, server, &LOCALGROUP_INFO_1::lgrpi1_name, names);
}

std::uint32_t EnumGlobalGroups(const std::u16string& server, std::vector<std::u16string>& names)
{
    return EnumGroups(NetGroupEnum, 2, server, &GROUP_INFO_2::grpi2_name, names);
}

std::uint32_t GetLocalGroupMembers(const std::u16string& server, const std::u16string& group,
                                   std::vector<std::u16string>& names)
{
    return MembersOf(NetLocalGroupGetMembers, 2, server, group,
                     &LOCALGROUP_MEMBERS_INFO_2::lgrmi2_domainandname, names);
}

std::uint32_t GetGlobalGroupUsers(const std::u16string& server, const std::u16string& group,
                                  std::vector<std::u16string>& names)
{
    return MembersOf(NetGroupGetUsers, 0, server, group, &GROUP_USERS_INFO_0::grui0_name, names);
}

}  // namespace platform
