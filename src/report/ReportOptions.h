// The command line of ZORHistoryReport:
//     ZORHistoryReport SOURCE [SOURCE...] [-o report.html] [-json report.json]
//                      [-codepage N] [-compare E1 E2 [-before]]
#pragma once

#include <string>
#include <vector>

struct ReportOptions {
    // The sources in the order given; at least one.
    std::vector<std::string> sources;
    std::string htmlPath;
    std::string jsonPath;
    // The ANSI code page of the Windows system that wrote the history.
    int codePage = 1252;
    // The two events that -compare names, or none; with -before the first
    // one's before snapshot is compared, else its after snapshot.
    std::string compareFirst;
    std::string compareSecond;
    bool compareBefore = false;
    bool help = false;
};

// False, with the reason, for a usage error. With neither -o nor -json the
// HTML report goes to report.html in the current folder.
bool ParseReportOptions(const std::vector<std::string>& arguments, ReportOptions& options, std::string& error);

extern const char* const kReportUsage;
