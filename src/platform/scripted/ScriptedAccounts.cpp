// The logged-on user and the groups, answered from the scripted machine.

#include "platform/Accounts.h"
#include "platform/common/NameAnswer.h"
#include "platform/scripted/ScriptedMachine.h"

namespace platform {

namespace {

scripted::Accounts& CurrentAccounts()
{
    return scripted::CurrentMachine().accounts;
}

std::uint32_t GroupNames(std::uint32_t status, const std::vector<scripted::ScriptedGroup>& groups,
                         std::vector<std::u16string>& names)
{
    names.clear();
    if (status != kNetSuccess)
        return status;
    for (const scripted::ScriptedGroup& group : groups)
        names.push_back(group.name);
    return status;
}

std::uint32_t MemberNames(const std::vector<scripted::ScriptedGroup>& groups,
                          const std::u16string& server, const std::u16string& group,
                          std::vector<std::u16string>& names)
{
    scripted::Accounts& accounts = CurrentAccounts();
    accounts.serversAsked.push_back(server);
    accounts.groupsAsked.push_back(group);
    names.clear();
    for (const scripted::ScriptedGroup& scriptedGroup : groups) {
        if (scriptedGroup.name != group)
            continue;
        if (scriptedGroup.membersStatus == kNetSuccess)
            names = scriptedGroup.members;
        return scriptedGroup.membersStatus;
    }
    return kNetGroupNotFound;
}

}  // namespace

bool QueryUserNameEx(std::uint32_t format, char* buffer, std::size_t bufferSize,
                     std::uint32_t& length)
{
    const scripted::Accounts& accounts = CurrentAccounts();
    const std::string& name = accounts.samCompatibleName;
    if (format != kNameSamCompatible || accounts.refusesUserName)
        return false;
    return AnswerUserName(name, buffer, bufferSize, length);
}

std::uint32_t GetWorkstationUser(bool& answered, WorkstationUser& user)
{
    const scripted::Accounts& accounts = CurrentAccounts();
    answered = accounts.workstationAnswers;
    if (answered)
        user = accounts.workstationUser;
    return accounts.workstationStatus;
}

std::uint32_t EnumLocalGroups(const std::u16string& server, std::vector<std::u16string>& names)
{
    CurrentAccounts().serversAsked.push_back(server);
    return GroupNames(CurrentAccounts().localGroupsStatus, CurrentAccounts().localGroups, names);
}

std::uint32_t EnumGlobalGroups(const std::u16string& server, std::vector<std::u16string>& names)
{
    CurrentAccounts().serversAsked.push_back(server);
    return GroupNames(CurrentAccounts().globalGroupsStatus, CurrentAccounts().globalGroups, names);
}

std::uint32_t GetLocalGroupMembers(const std::u16string& server, const std::u16string& group,
                                   std::vector<std::u16string>& names)
{
    return MemberNames(CurrentAccounts().localGroups, server, group, names);
}

std::uint32_t GetGlobalGroupUsers(const std::u16string& server, const std::u16string& group,
                                  std::vector<std::u16string>& names)
{
    return MemberNames(CurrentAccounts().globalGroups, server, group, names);
}

}  // namespace platform
