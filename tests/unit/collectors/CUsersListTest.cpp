// The users report: the logged-on user, the local groups and their members,
// and on a domain controller the global groups and theirs.
#include <iomanip>
#include <sstream>

#include <gtest/gtest.h>

#include "CollectorReport.h"
#include "collectors/CUsersList.h"
#include "platform/Accounts.h"

namespace {

using platform::scripted::ScriptedGroup;

ScriptedGroup Group(const std::u16string& name, std::vector<std::u16string> members)
{
    ScriptedGroup group;
    group.name = name;
    group.members = std::move(members);
    return group;
}

class UsersList : public CollectorTest {
protected:
    platform::scripted::Accounts& Accounts() { return Machine().accounts; }

    // A Server 2003 domain controller DC01 of domain CORP, with jsmith logged on.
    void SetDomainController()
    {
        Machine().computer.name = "DC01";
        SetVersion(platform::kPlatformWin32NT, 5, 2, 2, 0, "Service Pack 1");
        Accounts().samCompatibleName = "CORP\\jsmith";
        Accounts().workstationUser.userName = u"jsmith";
        Accounts().workstationUser.logonDomain = u"CORP";
        Accounts().workstationUser.logonServer = u"DC01";
        Accounts().localGroups = {
            Group(u"Administrators", {u"DC01\\Administrator", u"CORP\\Domain Admins"}),
            Group(u"Users", {u"CORP\\Domain Users"}),
        };
        Accounts().globalGroups = {
            Group(u"Domain Admins", {u"Administrator"}),
            Group(u"Domain Users", {u"Administrator", u"jsmith"}),
        };
    }

    // A Server 2003 member server FILES1 of domain CORP.
    void SetMemberServer()
    {
        Machine().computer.name = "FILES1";
        SetVersion(platform::kPlatformWin32NT, 5, 2, 3, 0, "Service Pack 1");
        Accounts().samCompatibleName = "CORP\\jsmith";
        Accounts().workstationUser.userName = u"jsmith";
        Accounts().localGroups = {
            Group(u"Administrators", {u"FILES1\\Administrator"}),
            Group(u"Remote Desktop Users", {u"CORP\\jsmith"}),
        };
        Accounts().globalGroups = {Group(u"None", {u"Administrator"})};
    }

    CUsersList Collected()
    {
        CUsersList users;
        EXPECT_EQ(users.Collect(), 0);
        return users;
    }
};

// Whole reports.

TEST_F(UsersList, DomainControllerReportShowsGlobalGroups)
{
    SetDomainController();
    EXPECT_EQ(Report<CUsersList>(),
              TextLines({
                  "",
                  "Logged on User:jsmith",
                  "===================================================================================",
                  "",
                  "Local Group List:",
                  "-----------------------------------",
                  "Group Name ",
                  "-----------------------------------",
                  "Administrators",
                  "Users",
                  "-----------------------------------",
                  "",
                  "Local User List:",
                  "--------------------------------------------------------------------------",
                  "Group                                   user   ",
                  "--------------------------------------------------------------------------",
                  "Administrators                          DC01\\Administrator",
                  "Administrators                          CORP\\Domain Admins",
                  "Users                                   CORP\\Domain Users",
                  "--------------------------------------------------------------------------",
                  "",
                  "Global Group List:",
                  "-----------------------------------",
                  "Group Name ",
                  "-----------------------------------",
                  "Domain Admins",
                  "Domain Users",
                  "--------------------------------------------------------------------------",
                  "Global User List:",
                  "--------------------------------------------------------------------------",
                  "Group                                   user   ",
                  "--------------------------------------------------------------------------",
                  "Domain Admins                           Administrator",
                  "Domain Users                            Administrator",
                  "Domain Users                            jsmith",
                  "--------------------------------------------------------------------------",
                  "===================================================================================",
              }));
}

TEST_F(UsersList, MemberServerReportEndsAfterLocalTables)
{
    SetMemberServer();
    EXPECT_EQ(Report<CUsersList>(),
              TextLines({
                  "",
                  "Logged on User:jsmith",
                  "===================================================================================",
                  "",
                  "Local Group List:",
                  "-----------------------------------",
                  "Group Name ",
                  "-----------------------------------",
                  "Administrators",
                  "Remote Desktop Users",
                  "-----------------------------------",
                  "",
                  "Local User List:",
                  "--------------------------------------------------------------------------",
                  "Group                                   user   ",
                  "--------------------------------------------------------------------------",
                  "Administrators                          FILES1\\Administrator",
                  "Remote Desktop Users                    CORP\\jsmith",
                  "--------------------------------------------------------------------------",
                  "",
                  "===================================================================================",
              }));
}

TEST_F(UsersList, NoLocalGroupsStillPrintsBothLocalFrames)
{
    Machine().computer.name = "EMPTY";
    SetVersion(platform::kPlatformWin32NT, 5, 1, 1, 0);
    Accounts().workstationUser.userName = u"guest";
    EXPECT_EQ(Report<CUsersList>(),
              TextLines({
                  "",
                  "Logged on User:guest",
                  "===================================================================================",
                  "",
                  "Local Group List:",
                  "-----------------------------------",
                  "Group Name ",
                  "-----------------------------------",
                  "-----------------------------------",
                  "",
                  "Local User List:",
                  "--------------------------------------------------------------------------",
                  "Group                                   user   ",
                  "--------------------------------------------------------------------------",
                  "--------------------------------------------------------------------------",
                  "",
                  "===================================================================================",
              }));
}

TEST_F(UsersList, DomainControllerWithoutGlobalGroupsPrintsEmptyGlobalFrame)
{
    SetDomainController();
    Accounts().localGroups.clear();
    Accounts().globalGroups.clear();
    EXPECT_EQ(Report<CUsersList>(),
              TextLines({
                  "",
                  "Logged on User:jsmith",
                  "===================================================================================",
                  "",
                  "Local Group List:",
                  "-----------------------------------",
                  "Group Name ",
                  "-----------------------------------",
                  "-----------------------------------",
                  "",
                  "Local User List:",
                  "--------------------------------------------------------------------------",
                  "Group                                   user   ",
                  "--------------------------------------------------------------------------",
                  "--------------------------------------------------------------------------",
                  "",
                  "Global Group List:",
                  "-----------------------------------",
                  "Group Name ",
                  "-----------------------------------",
                  "--------------------------------------------------------------------------",
                  "Global User List:",
                  "--------------------------------------------------------------------------",
                  "Group                                   user   ",
                  "--------------------------------------------------------------------------",
                  "--------------------------------------------------------------------------",
                  "===================================================================================",
              }));
}

TEST_F(UsersList, GroupNameOf30OrMoreCharactersTouchesTheTenBlanks)
{
    Machine().computer.name = "PC";
    Accounts().localGroups = {
        Group(u"Exactly thirty characters long", {u"PC\\alice"}),
        Group(u"A group name of thirty-four chars.", {u"PC\\bob"}),
    };
    const std::string report = Report<CUsersList>();
    EXPECT_NE(report.find(TextLines({
                  "Exactly thirty characters long          PC\\alice",
                  "A group name of thirty-four chars.          PC\\bob",
              })),
              std::string::npos)
        << report;
}

TEST_F(UsersList, CollectTwiceGivesSameRowsAsOnce)
{
    SetDomainController();
    CUsersList users;
    users.Collect();
    users.Collect();
    EXPECT_EQ(users.localGroups, (std::vector<std::string>{"Administrators", "Users"}));
    ASSERT_EQ(users.localGroupUsers.size(), 3u);
    EXPECT_EQ(users.globalGroups, (std::vector<std::string>{"Domain Admins", "Domain Users"}));
    ASSERT_EQ(users.globalGroupUsers.size(), 3u);
    const std::string twice = Logged([&users] { users.Write(); });
    EXPECT_EQ(twice, Report<CUsersList>());
}

TEST_F(UsersList, CollectReturns0AndWriteReturns1)
{
    CUsersList users;
    EXPECT_EQ(users.Collect(), 0);
    int written = 0;
    Logged([&] { written = users.Write(); });
    EXPECT_EQ(written, 1);
}

// The logged-on user.

TEST_F(UsersList, WorkstationServiceGivesBareUserName)
{
    SetDomainController();
    const CUsersList users = Collected();
    EXPECT_EQ(users.loggedOnUser, "jsmith");
    EXPECT_EQ(users.logonDomain, "CORP");
    EXPECT_EQ(users.logonServer, "DC01");
    EXPECT_EQ(users.spareText, "");
}

TEST_F(UsersList, WithoutWorkstationServiceUserIsDomainQualified)
{
    SetDomainController();
    Accounts().workstationStatus = platform::kNetWorkstationNotStarted;
    Accounts().workstationAnswers = false;
    EXPECT_EQ(Collected().loggedOnUser, "CORP\\jsmith");
}

TEST_F(UsersList, WorkstationResultWithFailedStatusIsNotUsed)
{
    SetDomainController();
    Accounts().workstationStatus = platform::kNetAccessDenied;
    const CUsersList users = Collected();
    EXPECT_EQ(users.loggedOnUser, "CORP\\jsmith");
    EXPECT_EQ(users.logonDomain, "");
}

TEST_F(UsersList, WorkstationServiceAloneGivesTheUser)
{
    Accounts().refusesUserName = true;
    Accounts().workstationUser.userName = u"operator";
    EXPECT_EQ(Collected().loggedOnUser, "operator");
}

TEST_F(UsersList, NoUserFromEitherCallLeavesLabelAlone)
{
    Accounts().refusesUserName = true;
    Accounts().workstationAnswers = false;
    Accounts().workstationStatus = platform::kNetWorkstationNotStarted;
    const std::string report = Report<CUsersList>();
    EXPECT_EQ(report.substr(0, TextLines({"", "Logged on User:"}).size()),
              TextLines({"", "Logged on User:"}));
}

TEST_F(UsersList, UserNameOf1024CharactersIsCutToTheBuffer)
{
    Accounts().samCompatibleName = "CORP\\" + std::string(1019, 'u');
    Accounts().workstationAnswers = false;
    Accounts().workstationStatus = platform::kNetWorkstationNotStarted;
    EXPECT_EQ(Collected().loggedOnUser, "CORP\\" + std::string(1018, 'u'));
}

// The groups and their members.

TEST_F(UsersList, EnumerationsAreAskedOfTheComputerAsServer)
{
    Machine().computer.name = "DC01";
    Accounts().localGroups = {Group(u"Users", {})};
    Collected();
    ASSERT_FALSE(Accounts().serversAsked.empty());
    for (const std::u16string& server : Accounts().serversAsked)
        EXPECT_TRUE(server == u"\\\\DC01");
}

TEST_F(UsersList, WithoutComputerNameEnumerationsGetEmptyServer)
{
    Machine().computer.name = "DC01";
    Machine().computer.refusesName = true;
    Accounts().localGroups = {Group(u"Users", {u"X\\y"})};
    const CUsersList users = Collected();
    EXPECT_EQ(users.serverName, "");
    ASSERT_FALSE(Accounts().serversAsked.empty());
    for (const std::u16string& server : Accounts().serversAsked)
        EXPECT_TRUE(server.empty());
    EXPECT_EQ(users.localGroupUsers.size(), 1u);
}

TEST_F(UsersList, ServerNameIsBackslashesAndComputerName)
{
    Machine().computer.name = "FILES1";
    EXPECT_EQ(CUsersList().serverName, "\\\\FILES1");
}

TEST_F(UsersList, MembersRecordUserAndGroup)
{
    SetDomainController();
    const CUsersList users = Collected();
    ASSERT_EQ(users.localGroupUsers.size(), 3u);
    EXPECT_EQ(users.localGroupUsers[1].userName, "CORP\\Domain Admins");
    EXPECT_EQ(users.localGroupUsers[1].groupName, "Administrators");
    ASSERT_EQ(users.globalGroupUsers.size(), 3u);
    EXPECT_EQ(users.globalGroupUsers[2].userName, "jsmith");
    EXPECT_EQ(users.globalGroupUsers[2].groupName, "Domain Users");
}

TEST_F(UsersList, FailedLocalEnumerationLeavesBothLocalListsEmpty)
{
    SetDomainController();
    Accounts().localGroupsStatus = platform::kNetAccessDenied;
    const CUsersList users = Collected();
    EXPECT_TRUE(users.localGroups.empty());
    EXPECT_TRUE(users.localGroupUsers.empty());
    EXPECT_EQ(users.globalGroups.size(), 2u);
}

TEST_F(UsersList, FailedGlobalEnumerationLeavesBothGlobalListsEmpty)
{
    SetDomainController();
    Accounts().globalGroupsStatus = platform::kNetNotSupported;
    const CUsersList users = Collected();
    EXPECT_TRUE(users.globalGroups.empty());
    EXPECT_TRUE(users.globalGroupUsers.empty());
    EXPECT_EQ(users.localGroupUsers.size(), 3u);
}

TEST_F(UsersList, GroupWhoseMembersCantBeReadHasNoRowsAndOthersGoOn)
{
    SetDomainController();
    Accounts().localGroups[0].membersStatus = platform::kNetAccessDenied;
    const CUsersList users = Collected();
    ASSERT_EQ(users.localGroupUsers.size(), 1u);
    EXPECT_EQ(users.localGroupUsers[0].groupName, "Users");
    EXPECT_EQ(users.localGroups.size(), 2u);
}

TEST_F(UsersList, GlobalListsAreGatheredOnMemberServerButNotPrinted)
{
    SetMemberServer();
    const CUsersList users = Collected();
    EXPECT_EQ(users.globalGroups, (std::vector<std::string>{"None"}));
    EXPECT_EQ(Report<CUsersList>().find("None"), std::string::npos);
}

TEST_F(UsersList, GlobalPartIsLeftOutWhenVersionIsUnknown)
{
    SetDomainController();
    Machine().acceptsExtendedVersion = false;
    Machine().acceptsVersion = false;
    EXPECT_EQ(Report<CUsersList>().find("Global Group List:"), std::string::npos);
}

TEST_F(UsersList, NameTooLongForNarrowBufferIsEmpty)
{
    Machine().computer.name = "PC";
    Accounts().localGroups = {
        Group(u"Users", {std::u16string(128, u'n'), u"PC\\short"}),
    };
    const CUsersList users = Collected();
    ASSERT_EQ(users.localGroupUsers.size(), 2u);
    EXPECT_EQ(users.localGroupUsers[0].userName, "");
    EXPECT_EQ(users.localGroupUsers[1].userName, "PC\\short");
}

TEST_F(UsersList, NameOf127CharactersFitsNarrowBuffer)
{
    Accounts().localGroups = {Group(std::u16string(127, u'g'), {})};
    EXPECT_EQ(Collected().localGroups, (std::vector<std::string>{std::string(127, 'g')}));
}

TEST_F(UsersList, LeftAlignmentStaysOnAfterReport)
{
    SetMemberServer();
    CUsersList users;
    users.Collect();
    const std::string text = Logged([&users] {
        users.Write();
        CLogger::Instance() << std::setw(6) << 42 << "|" << std::endl;
    });
    EXPECT_NE(text.find(TextLines({"42    |"})), std::string::npos) << text;
}

}  // namespace
