#include "collectors/CUsersList.h"

#include <cstdint>
#include <cstring>
#include <iomanip>
#include <ostream>

#include "collectors/CComputerInfo.h"
#include "collectors/MachineNames.h"
#include "collectors/ReportTexts.h"
#include "inventory/RegistryReader.h"
#include "platform/Accounts.h"
#include "platform/TextConversion.h"
#include "recorder/CLogger.h"

namespace {

using namespace texts::users;

const std::string kReportRule(kReportRuleLength, '=');
const std::string kGroupRule(kGroupRuleLength, '-');
const std::string kUserRule(kUserRuleLength, '-');

// GetUserNameExA's buffer, and the length word that it is given, one more
// than the buffer holds.
constexpr std::size_t kUserNameBufferSize = 1024;
constexpr std::uint32_t kUserNameLengthWord = 1025;

// A wide name that comes back from a call goes through a narrow buffer of 128
// bytes; a name that goes into a call, through a wide one of 256 characters.
constexpr int kNarrowNameSize = 128;
constexpr std::size_t kWideNameCapacity = 256;

using NarrowBuffer = char[kNarrowNameSize];

// The name as it stands in the narrow buffer after the conversion, whose
// result isn't looked at. The buffer is not cleared between names.
std::string Narrowed(const std::u16string& wide, NarrowBuffer& buffer)
{
    WideToMultiByte(wide, buffer, kNarrowNameSize);
    const void* end = std::memchr(buffer, '\0', kNarrowNameSize);
    const std::size_t length =
        end == nullptr ? kNarrowNameSize
                       : static_cast<std::size_t>(static_cast<const char*>(end) - buffer);
    return std::string(buffer, length);
}

// The name widened for a call; the conversion's result isn't looked at.
std::u16string Widened(const std::string& name)
{
    std::u16string wide;
    platform::NarrowToWide(name, kWideNameCapacity, wide);
    return wide;
}

using GroupEnumeration = std::uint32_t (*)(const std::u16string&, std::vector<std::u16string>&);
using MembersEnumeration = std::uint32_t (*)(const std::u16string&, const std::u16string&,
                                             std::vector<std::u16string>&);

// One enumeration of the groups on the server; a failed one adds nothing.
void CollectGroups(const std::string& serverName, GroupEnumeration enumerate,
                   std::vector<std::string>& groups)
{
    const std::u16string server = Widened(serverName);
    std::vector<std::u16string> names;
    if (enumerate(server, names) != platform::kNetSuccess)
        return;
    NarrowBuffer buffer = {};
    for (const std::u16string& name : names)
        groups.push_back(Narrowed(name, buffer));
}

// The members of each group in turn. The status of a members call isn't looked
// at: a group whose members can't be read just has none.
void CollectMembers(const std::string& serverName, const std::vector<std::string>& groups,
                    MembersEnumeration enumerate, std::vector<GroupUser>& members)
{
    const std::u16string server = Widened(serverName);
    NarrowBuffer buffer = {};
    for (const std::string& group : groups) {
        std::vector<std::u16string> names;
        enumerate(server, Widened(group), names);
        for (const std::u16string& name : names) {
            GroupUser member;
            member.userName = Narrowed(name, buffer);
            member.groupName = group;
            members.push_back(member);
        }
    }
}

void WriteGroupNames(CLogger& log, const std::vector<std::string>& groups)
{
    for (const std::string& group : groups)
        log << group << std::endl;
}

// The left-adjust bit is turned on alone, before each row, and stays on.
void WriteUserRows(CLogger& log, const std::vector<GroupUser>& members)
{
    for (const GroupUser& member : members) {
        log.setf(std::ios_base::left);
        log << std::setw(kGroupColumnWidth) << member.groupName << kUserColumnGap
            << member.userName << std::endl;
    }
}

}  // namespace

// The enumerations are all made against "\\" and the computer name; without a
// name they go to an empty server name.
CUsersList::CUsersList()
{
    std::string computerName;
    if (ReadComputerName(computerName))
        serverName = "\\\\" + computerName;
}

CUsersList::~CUsersList() {}

int CUsersList::Collect()
{
    Clear();
    CollectLoggedOnUser();
    CollectLocalGroups();
    CollectLocalGroupUsers();
    CollectGlobalGroups();
    CollectGlobalGroupUsers();
    return 0;
}

void CUsersList::Clear()
{
    globalGroupUsers.clear();
    globalGroups.clear();
    localGroupUsers.clear();
    localGroups.clear();
}

// The workstation service's bare user name replaces the domain-qualified one
// whenever the service answers.
void CUsersList::CollectLoggedOnUser()
{
    char userName[kUserNameBufferSize] = {};
    std::uint32_t length = kUserNameLengthWord;
    if (platform::QueryUserNameEx(platform::kNameSamCompatible, userName, sizeof userName, length))
        loggedOnUser = userName;

    bool answered = false;
    platform::WorkstationUser user;
    const std::uint32_t status = platform::GetWorkstationUser(answered, user);
    if (status == platform::kNetSuccess && answered) {
        NarrowBuffer buffer = {};
        loggedOnUser = Narrowed(user.userName, buffer);
        logonDomain = Narrowed(user.logonDomain, buffer);
        logonServer = Narrowed(user.logonServer, buffer);
    }
}

void CUsersList::CollectLocalGroups()
{
    CollectGroups(serverName, platform::EnumLocalGroups, localGroups);
}

void CUsersList::CollectLocalGroupUsers()
{
    CollectMembers(serverName, localGroups, platform::GetLocalGroupMembers, localGroupUsers);
}

void CUsersList::CollectGlobalGroups()
{
    CollectGroups(serverName, platform::EnumGlobalGroups, globalGroups);
}

void CUsersList::CollectGlobalGroupUsers()
{
    CollectMembers(serverName, globalGroups, platform::GetGlobalGroupUsers, globalGroupUsers);
}

// The global part is shown only on a domain controller, which a computer
// report of its own tells. Its group table closes with the long rule, and no
// empty line comes before its user list.
int CUsersList::Write()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << kLoggedOnUserLabel << loggedOnUser << std::endl;
    log << kReportRule << std::endl;
    log << std::endl;
    log << kLocalGroupList << std::endl;
    log << kGroupRule << std::endl;
    log << kGroupHeader << std::endl;
    log << kGroupRule << std::endl;
    WriteGroupNames(log, localGroups);
    log << kGroupRule << std::endl;
    log << std::endl;
    log << kLocalUserList << std::endl;
    log << kUserRule << std::endl;
    log << kUserHeader << std::endl;
    log << kUserRule << std::endl;
    WriteUserRows(log, localGroupUsers);
    log << kUserRule << std::endl;
    log << std::endl;

    CComputerInfo computer;
    computer.Collect();
    if (computer.isDomainController) {
        log << kGlobalGroupList << std::endl;
        log << kGroupRule << std::endl;
        log << kGroupHeader << std::endl;
        log << kGroupRule << std::endl;
        WriteGroupNames(log, globalGroups);
        log << kUserRule << std::endl;
        log << kGlobalUserList << std::endl;
        log << kUserRule << std::endl;
        log << kUserHeader << std::endl;
        log << kUserRule << std::endl;
        WriteUserRows(log, globalGroupUsers);
        log << kUserRule << std::endl;
    }
    log << kReportRule << std::endl;
    return 1;
}
