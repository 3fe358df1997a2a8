// The users and groups of a snapshot. A user's groups are one value, so that a
// user who joins or leaves a group shows as one change of membership.
#include <algorithm>
#include <cctype>
#include <map>
#include <set>

#include "collectors/ReportTexts.h"
#include "report/SectionReaders.h"
#include "report/SectionText.h"

namespace {

using namespace texts::users;

using Memberships = std::map<std::string, std::set<std::string>>;

const char kUserKind[] = "user";
const char kGroupsKey[] = "groups";
const char kMemberOf[] = "member of ";
// The groups of a user whom no group names as a member.
const char kInNoGroup[] = "in no group's member list";

const std::string kGroupRule(kGroupRuleLength, '-');
const std::string kUserRule(kUserRuleLength, '-');

// A row: the group in its column of 30, ten blanks, the user. A group of 30
// characters or more pushes the blanks along; a row of a damaged log may end
// short of the column.
void ReadUserRow(std::string_view row, Memberships& members)
{
    const std::string gap = kUserColumnGap;
    std::size_t gapAt = kGroupColumnWidth;
    if (gapAt > row.size() || row.compare(gapAt, gap.size(), gap) != 0)
        gapAt = row.find(gap, kGroupColumnWidth);
    if (gapAt == std::string::npos || gapAt > row.size())
        gapAt = row.size();
    const std::string group = TrimmedRight(row.substr(0, gapAt));
    const std::string user(gapAt + gap.size() <= row.size() ? row.substr(gapAt + gap.size()) : std::string_view());
    members[user].insert(group);
}

// The kind as the fields name it: "global group" is "globalGroup".
std::string KindKey(const std::string& kind)
{
    std::string key;
    bool upper = false;
    for (const char c : kind) {
        if (c != ' ')
            key += upper ? static_cast<char>(std::toupper(static_cast<unsigned char>(c))) : c;
        upper = c == ' ';
    }
    return key;
}

std::size_t ReadGroups(const SectionLines& lines, std::size_t from, const std::string& closingRule,
                       const std::string& kind, SnapshotSection& section)
{
    const TableRows rows = FindTableRows(lines, from, kGroupRule, 2, closingRule);
    for (std::size_t i = rows.first; i < rows.end; ++i)
        section.Mark(kind + " " + std::string(lines[i]), std::string(),
                     ItemFields{KindKey(kind), {TextField("name", std::string(lines[i]))}, {}});
    return rows.next;
}

std::size_t ReadMembers(const SectionLines& lines, std::size_t from, Memberships& members)
{
    const TableRows rows = FindTableRows(lines, from, kUserRule, 2, kUserRule);
    for (std::size_t i = rows.first; i < rows.end; ++i)
        ReadUserRow(lines[i], members);
    return rows.next;
}

void AddMemberships(const Memberships& members, const std::string& kind, SnapshotSection& section)
{
    for (const auto& member : members) {
        std::string groups;
        for (const std::string& group : member.second)
            groups += (groups.empty() ? "" : ", ") + group;
        const ItemFields fields{KindKey(kind),
                                {TextField("name", member.first)},
                                {ListField(kGroupsKey, {member.second.begin(), member.second.end()})}};
        section.Add(kind + " " + member.first, kMemberOf + groups, std::string(), fields);
    }
}

// Moves the users among the things that came or went into the changes, with
// no group on the side where they are missing.
void MoveUsers(std::vector<ListedItem>& items, bool added, std::vector<ItemChange>& changed)
{
    const std::string user = std::string(kUserKind) + " ";
    const auto isUser = [&user](const ListedItem& item) { return StartsWith(item.name, user.c_str()); };
    const std::vector<ItemField> inNoGroup{ListField(kGroupsKey, {})};
    for (const ListedItem& item : items) {
        if (!isUser(item))
            continue;
        ItemChange change = added ? ItemChange{item.name, kInNoGroup, item.value, item.bytesCut, item.fields, inNoGroup}
                                  : ItemChange{item.name, item.value, kInNoGroup, item.bytesCut, item.fields,
                                               item.fields.values};
        if (!added)
            change.fields.values = inNoGroup;
        changed.push_back(std::move(change));
    }
    items.erase(std::remove_if(items.begin(), items.end(), isUser), items.end());
}

}  // namespace

void TellUsersByTheirGroups(SectionChanges& users)
{
    MoveUsers(users.added, true, users.changed);
    MoveUsers(users.removed, false, users.changed);
    std::sort(users.changed.begin(), users.changed.end(),
              [](const ItemChange& a, const ItemChange& b) { return a.name < b.name; });
}

void ReadUsersSection(const SectionLines& lines, SnapshotSection& section)
{
    Memberships localMembers;
    Memberships globalMembers;
    for (std::size_t i = 0; i < lines.size();) {
        const std::string_view line = lines[i++];
        if (StartsWith(line, kLoggedOnUserLabel))
            section.Add("logged-on user", TextBehind(line, kLoggedOnUserLabel), std::string(),
                        ItemFields{"loggedOnUser", {}, {TextField("user", TextBehind(line, kLoggedOnUserLabel))}});
        else if (line == kLocalGroupList)
            i = ReadGroups(lines, i, kGroupRule, "group", section);
        else if (line == kGlobalGroupList)
            i = ReadGroups(lines, i, kUserRule, "global group", section);
        else if (line == kLocalUserList)
            i = ReadMembers(lines, i, localMembers);
        else if (line == kGlobalUserList)
            i = ReadMembers(lines, i, globalMembers);
    }
    AddMemberships(localMembers, kUserKind, section);
    AddMemberships(globalMembers, "global user", section);
}
