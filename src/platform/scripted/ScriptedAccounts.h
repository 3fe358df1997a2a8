// The scripted machine's accounts: the logged-on user as each call reports it,
// and the local and global groups with their members.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Accounts.h"

namespace platform {
namespace scripted {

struct ScriptedGroup {
    std::u16string name;
    // The names that the members call hands out for the group: domain and
    // user for a local group, the bare user for a global one.
    std::vector<std::u16string> members;
    // The status of the members call for this group; with any status but 0
    // the call hands out no members.
    std::uint32_t membersStatus = kNetSuccess;
};

struct Accounts {
    // GetUserNameExA in the NameSamCompatible format: the name, unless
    // refused. As with the real call, the name and its terminator must fit the
    // caller's length word.
    std::string samCompatibleName;
    bool refusesUserName = false;

    // NetWkstaUserGetInfo: its status, whether it hands out a result (which it
    // may do with any status), and the result.
    std::uint32_t workstationStatus = kNetSuccess;
    bool workstationAnswers = true;
    WorkstationUser workstationUser;

    // NetLocalGroupEnum and NetGroupEnum: their statuses and their groups, in
    // the order the calls hand them out. With any status but 0 they hand out
    // no groups.
    std::uint32_t localGroupsStatus = kNetSuccess;
    std::vector<ScriptedGroup> localGroups;
    std::uint32_t globalGroupsStatus = kNetSuccess;
    std::vector<ScriptedGroup> globalGroups;

    // The server argument of every enumeration and members call, in order.
    std::vector<std::u16string> serversAsked;
    // The group argument of every members call, local and global, in order.
    std::vector<std::u16string> groupsAsked;
};

}  // namespace scripted
}  // namespace platform
