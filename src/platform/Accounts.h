// Who is logged on, and the users and groups of a machine: the calls of
// secur32.dll and netapi32.dll, one call each. Names of the network calls are
// wide (UTF-16), as the calls hand them out; the statuses are theirs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace platform {

// The name formats of GetUserNameExA that the system asks for.
constexpr std::uint32_t kNameSamCompatible = 2;

// Statuses of the network management calls.
constexpr std::uint32_t kNetSuccess = 0;
constexpr std::uint32_t kNetNotSupported = 50;        // ERROR_NOT_SUPPORTED
constexpr std::uint32_t kNetAccessDenied = 5;         // ERROR_ACCESS_DENIED
constexpr std::uint32_t kNetGroupNotFound = 2220;     // NERR_GroupNotFound
constexpr std::uint32_t kNetWorkstationNotStarted = 2138;  // NERR_WkstaNotStarted

// GetUserNameExA(format, buffer, &length). The system writes into a buffer of
// its own that is as large as the length word says, so that no length word can
// make it overflow `buffer`; on success the name is copied into `buffer`, cut to
// `bufferSize` - 1 characters and terminated, and true is returned. On a
// failure `buffer` is left as it was.
bool QueryUserNameEx(std::uint32_t format, char* buffer, std::size_t bufferSize,
                     std::uint32_t& length);

// The fields of WKSTA_USER_INFO_1 that the system reads.
struct WorkstationUser {
    std::u16string userName;     // wkui1_username
    std::u16string logonDomain;  // wkui1_logon_domain
    std::u16string logonServer;  // wkui1_logon_server
};

// NetWkstaUserGetInfo(null, 1, &result): its status. `answered` tells whether
// the result pointer came back other than null, and `user` then holds its
// fields. A result is freed with NetApiBufferFree whatever the status.
std::uint32_t GetWorkstationUser(bool& answered, WorkstationUser& user);

// One call each, for everything at once (MAX_PREFERRED_LENGTH), with the
// entries-read and total-entries words and the resume handle at 0. `names`
// gets the names of the entries read, in the order of the result.
//
// NetLocalGroupEnum at level 1 (lgrpi1_name) and NetGroupEnum at level 2
// (grpi2_name) on `server`: the result is freed only after a status of 0; on
// any other status it is left as the call gave it.
std::uint32_t EnumLocalGroups(const std::u16string& server, std::vector<std::u16string>& names);
std::uint32_t EnumGlobalGroups(const std::u16string& server, std::vector<std::u16string>& names);

// NetLocalGroupGetMembers at level 2 (lgrmi2_domainandname, domain-qualified)
// and NetGroupGetUsers at level 0 (grui0_name, bare user names) for `group` on
// `server`: the result pointer is handed to NetApiBufferFree whatever the
// status, even when it is still null.
std::uint32_t GetLocalGroupMembers(const std::u16string& server, const std::u16string& group,
                                   std::vector<std::u16string>& names);
std::uint32_t GetGlobalGroupUsers(const std::u16string& server, const std::u16string& group,
                                  std::vector<std::u16string>& names);

}  // namespace platform
