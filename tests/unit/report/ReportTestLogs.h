// Event logs for the report's tests, written by hand in the recorder's format:
// each line as the recorder's writers lay it down, padded the way their
// column widths pad it.
#pragma once

#include <string>
#include <vector>

namespace reportlogs {

// The text padded with blanks on the right (left-aligned) to the width.
std::string Left(const std::string& text, std::size_t width);
// The text padded with blanks on the left (right-aligned) to the width.
std::string Right(const std::string& text, std::size_t width);
std::string Rule(char c, std::size_t length);
std::string Lines(const std::vector<std::string>& lines);

struct Service {
    std::string displayName;
    std::string state;
};
struct Software {
    std::string publisher;
    std::string name;
    std::string version;
};
struct Process {
    int id;
    std::string name;
};

// The six sections of a snapshot with the given contents. No product copy
// and no ODBC driver unless `copyLines` and `odbcLines` say otherwise.
struct SnapshotContent {
    std::string loggedOnUser = "alice";
    std::vector<std::string> localGroups;
    std::vector<std::pair<std::string, std::string>> localMembers;  // group, user
    std::vector<Software> software;
    std::vector<Process> processes;
    std::vector<Service> services;
    std::vector<std::string> productLines;  // section 5 behind its heading
    std::vector<std::string> odbcLines;     // section 6 behind its heading
};

// The lines of sections 5 and 6 for a machine without the product.
std::vector<std::string> NoProductLines();
std::vector<std::string> NoDriverLines();

// A whole snapshot block, with its frame and closing lines.
std::string StartSnapshot(const std::string& eventId, const std::string& action, const SnapshotContent& content);
std::string EndSnapshot(const std::string& eventId, const std::string& action, const SnapshotContent& content);

// The head of a -start: banner and computer report.
std::string StartHead(const std::string& eventId, const std::string& computer, const std::string& os);
// The tail of an -end: result block and end banner.
std::string EndTail(const std::string& action);

}  // namespace reportlogs
