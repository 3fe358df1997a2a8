// The fixed texts of the collectors' reports in the event log: titles, labels,
// rules, column headers and the widths of the columns below them. The
// collectors write them; the companion report reads a snapshot by them.
#pragma once

#include <cstddef>

namespace texts {

namespace computer {
inline constexpr char kTitle[] = "System Information: ";
inline constexpr int kRuleLength = 45;
inline constexpr char kComputerNameLabel[] = "Computer Name       :";
inline constexpr char kOSLabel[] = "OS                  :";
inline constexpr char kTypeLabel[] = "Type                :";
inline constexpr char kServicePackLabel[] = "Service Pack        :";
inline constexpr char kProcessorCountLabel[] = "Number of processors:";
inline constexpr char kCPULabel[] = "CPU                 :";
}  // namespace computer

namespace users {
inline constexpr char kLoggedOnUserLabel[] = "Logged on User:";
inline constexpr char kLocalGroupList[] = "Local Group List:";
inline constexpr char kLocalUserList[] = "Local User List:";
inline constexpr char kGlobalGroupList[] = "Global Group List:";
inline constexpr char kGlobalUserList[] = "Global User List:";
inline constexpr int kReportRuleLength = 83;  // of "="
inline constexpr int kGroupRuleLength = 35;   // of "-"
inline constexpr int kUserRuleLength = 74;    // of "-"
inline constexpr char kGroupHeader[] = "Group Name ";
inline constexpr char kUserHeader[] = "Group                                   user   ";
// A user row: the group in a column of 30, these ten blanks, the user.
inline constexpr char kUserColumnGap[] = "          ";
inline constexpr int kGroupColumnWidth = 30;
}  // namespace users

namespace software {
inline constexpr char kRule[] =
    "----------------------------------------------------------------------------------------------------"
    "-------------------------------------------------------------------------------------";
inline constexpr char kHeader[] =
    "Publisher                     Product Name                                                     "
    "Version             InstallDate   Language   Location";
// Publisher, product name, version, install date and language; the location
// follows with no width.
inline constexpr std::size_t kColumnCount = 5;
inline constexpr int kColumnWidths[kColumnCount] = {30, 65, 20, 14, 11};
}  // namespace software

namespace processes {
inline constexpr char kCountLabel[] = "Processes:";
inline constexpr char kRule[] = "--------------------------------------------------- ";
inline constexpr char kHeader[] = "Process ID         Process Name                     ";
inline constexpr char kEnd[] = "---------- Process List ( end )-------------------- ";
inline constexpr int kIdWidth = 19;
}  // namespace processes

namespace services {
inline constexpr char kRule[] = "-------------------------------------------------------------------- ";
inline constexpr char kHeader[] = "Service Name                                                Status   ";
inline constexpr int kDisplayNameWidth = 60;
inline constexpr int kStateWidth = 15;
// The words for the states 1 to 7, in order, and for any other number.
inline constexpr std::size_t kKnownStateCount = 7;
inline constexpr const char* kStateWords[kKnownStateCount] = {
    "Stopped", "Is starting", "Is stopping", "Started",
    "The service continue is pending", "The service pause is pending", "Paused",
};
inline constexpr char kUnknownState[] = "Uknown";
}  // namespace services

}  // namespace texts
