// The readable digest of History.ini that goes into the archive: one overall
// Summary.txt in the history folder and one Summary.txt in each copy's folder.
// Each event's files are staged on the way, so that both reports show where
// the files now lie.
#include <cstddef>
#include <fstream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "collect/CopyGroup.h"
#include "history/CHistoryStore.h"
#include "history/CIniFile.h"
#include "history/HistoryKeys.h"
#include "history/HistoryPaths.h"
#include "platform/FileSystem.h"
#include "platform/Process.h"
#include "recorder/CInstallEvent.h"
#include "zip/PathParts.h"

namespace {

const char* const kSummaryFileName = "Summary.txt";

const char* const kShortRule = "--------------------------------------------------------------";
const char* const kLongRule = "-------------------------------------------------------------------------------------------------------------------------------";

// The second line of a group head differs between the two reports.
const char* const kOverallCountLabel = "Count of Events      :";
const char* const kCopyCountLabel = "Count of Events:";

using GroupList = std::vector<std::unique_ptr<CopyGroup>>;

std::string SummaryPathIn(const std::string& folder)
{
    return folder + "\\" + kSummaryFileName;
}

// Opens a report as the stream's constructor would: where the file can't be
// written, the stream is failed and every line of the report goes nowhere.
void OpenReport(std::ofstream& report, const std::string& path)
{
    if (!platform::OpenFileBuffer(*report.rdbuf(), path, std::ios_base::out))
        report.setstate(std::ios_base::failbit);
}

// The group whose name equals `key` byte for byte, or null.
CopyGroup* FindGroup(const GroupList& groups, const std::string& key)
{
    for (const auto& group : groups) {
        if (group->name == key)
            return group.get();
    }
    return nullptr;
}

// Groups the events by Copy_Name, in order of first appearance; an event
// without a copy name forms a group of its own, named after its section.
GroupList GroupEvents(const std::vector<std::string>& sectionNames)
{
    GroupList groups;
    for (const std::string& sectionName : sectionNames) {
        CInstallEvent event(sectionName);
        const std::string copyName = event.GetCopyName();
        const std::string& key = copyName.empty() ? sectionName : copyName;
        CopyGroup* group = FindGroup(groups, key);
        if (group == nullptr) {
            groups.push_back(std::make_unique<CopyGroup>());
            group = groups.back().get();
            group->name = key;
        }
        group->events.push_back(event);
    }
    return groups;
}

void WriteOverallHead(std::ostream& out, std::size_t groupCount)
{
    out << kShortRule << std::endl;
    out << "*         Overall Summary of ZOR Installation History        *" << std::endl;
    out << kShortRule << std::endl;
    out << std::endl;
    out << "Total ZOR Copies:" << groupCount << std::endl;
    out << kLongRule << std::endl;
}

void WriteGroupHead(std::ostream& out, const CopyGroup& group, const char* countLabel)
{
    out << "ZOR Installation Copy:" << group.name << std::endl;
    out << countLabel << group.events.size() << std::endl;
    out << kLongRule << std::endl;
}

// The fourteen rows of one event and its closing rule. Every value is read
// from History.ini again, for each report.
void WriteEventRows(std::ostream& out, CInstallEvent& event)
{
    out << "Event ID        :" << event.GetEventID() << std::endl;
    out << "Start Time      :" << event.GetStartTime() << std::endl;
    out << "End Time        :" << event.GetEndTime() << std::endl;
    out << "Install Type    :" << event.GetType() << std::endl;
    out << "Product         :" << event.GetProduct() << std::endl;
    out << "Version         :" << event.GetVersion() << std::endl;
    out << "Service Level   :" << event.GetServiceLevel() << std::endl;
    out << "Install Path    :" << event.GetPath() << std::endl;
    out << "Copy Name       :" << event.GetCopyName() << std::endl;
    out << "Log File Name   :" << event.GetLogFileName() << std::endl;
    out << "Trace File Name :" << event.GetTraceFile() << std::endl;
    out << "Response File   :" << event.GetResponseFile() << std::endl;
    out << "Event Log File  :" << event.GetEventLogFile() << std::endl;
    out << "Result          :" << event.GetResult() << std::endl;
    out << kLongRule << std::endl;
}

// Opens a copy report as OpenReport does. A group whose name would lead out of
// the history folder gets a failed stream, as if its folder didn't exist.
void OpenCopyReport(std::ofstream& report, const std::string& groupName)
{
    if (StaysInsideFolder(groupName))
        OpenReport(report, SummaryPathIn(GetHistoryFolder() + "\\" + groupName));
    else
        report.setstate(std::ios_base::failbit);
}

// Writes one group into the overall report and into its own copy report. The
// copy's folder isn't made here: where it doesn't exist, the copy report goes
// nowhere.
void WriteGroup(std::ostream& overall, const CopyGroup& group)
{
    std::ofstream copy;
    OpenCopyReport(copy, group.name);
    WriteGroupHead(overall, group, kOverallCountLabel);
    WriteGroupHead(copy, group, kCopyCountLabel);
    for (const CInstallEvent& storedEvent : group.events) {
        CInstallEvent event = storedEvent;
        event.StageFiles();
        WriteEventRows(overall, event);
        overall << std::endl;
        WriteEventRows(copy, event);
    }
    copy << std::endl;
    copy << " -------------------- end of sumamry -------------------- ";
    copy.close();
}

}  // namespace

bool CHistoryStore::HistoryFileExists()
{
    return FileExists(GetHistoryIniPath().c_str());
}

// Every section but the store's own is an event. The walk is kept as it has
// always been: after an erasure the cursor still steps forward, so the section
// that moved into the erased place isn't compared, and an erased last section
// leaves the cursor on the end, where the step past it is the checked array's
// fatal range violation and stops the process.
std::vector<std::string>& CHistoryStore::ListEvents(std::vector<std::string>& events)
{
    CIniFile ini(GetHistoryIniPath());
    events = ini.GetSectionNames();
    std::size_t cursor = 0;
    while (cursor != events.size()) {
        if (events[cursor] == kHistorySection)
            events.erase(events.begin() + static_cast<std::ptrdiff_t>(cursor));
        if (cursor == events.size())
            platform::StopOnInvalidParameter();
        ++cursor;
    }
    return events;
}

// The overall report is opened before the sections are read, and gets its
// first line only once all events are grouped.
bool CHistoryStore::WriteSummary()
{
    if (!HistoryFileExists())
        return false;
    std::ofstream overall;
    OpenReport(overall, SummaryPathIn(GetHistoryFolder()));
    std::vector<std::string> events;
    ListEvents(events);
    const GroupList groups = GroupEvents(events);
    WriteOverallHead(overall, groups.size());
    for (const auto& group : groups)
        WriteGroup(overall, *group);
    overall << "----------------------  end of overall summary ----------------------------------------"
            << std::endl;
    overall.close();
    return true;
}
