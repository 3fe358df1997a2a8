// Who is logged on, and the local groups (and on a domain controller the
// global groups) of the machine with their members.
#pragma once

#include <string>
#include <vector>

#include "collectors/Info.h"

// One membership: a user in three groups gives three records.
struct GroupUser {
    std::string userName;
    std::string groupName;
};

class CUsersList : public Info {
public:
    CUsersList();
    virtual ~CUsersList();
    virtual int Collect();
    virtual int Write();

    std::string serverName;
    std::string loggedOnUser;
    std::string spareText;
    std::string logonDomain;
    std::string logonServer;
    std::vector<std::string> localGroups;
    std::vector<GroupUser> localGroupUsers;
    std::vector<std::string> globalGroups;
    std::vector<GroupUser> globalGroupUsers;

private:
    void Clear();
    void CollectLoggedOnUser();
    void CollectLocalGroups();
    void CollectLocalGroupUsers();
    void CollectGlobalGroups();
    void CollectGlobalGroupUsers();
};
