#include "ReportTestLogs.h"

namespace reportlogs {

std::string Left(const std::string& text, std::size_t width)
{
    return text.size() >= width ? text : text + std::string(width - text.size(), ' ');
}

std::string Right(const std::string& text, std::size_t width)
{
    return text.size() >= width ? text : std::string(width - text.size(), ' ') + text;
}

std::string Rule(char c, std::size_t length)
{
    return std::string(length, c);
}

std::string Lines(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

std::vector<std::string> NoProductLines()
{
    return {
        "",
        Rule('*', 93),
        "*  PART A --ZOR Installed Copies Information -- Prior to V9                                 *",
        Rule('*', 93),
        "There is no ZOR prior to V9 Installed ",
        "",
        Rule('*', 93),
        "*  PART B --ZOR Installed Copies Information -- V9 & Later                                  *",
        Rule('*', 93),
        "",
        "Total ZOR Copies:0",
        "",
        "There is no ZOR V9 & later installed ",
    };
}

std::vector<std::string> NoDriverLines()
{
    return {"", "Total ZOR ODBC Drivers:0", " ******** There is no ZOR ODBC Driver Installed *********"};
}

namespace {

std::vector<std::string> UsersLines(const SnapshotContent& content)
{
    std::vector<std::string> lines = {
        "", "Logged on User:" + content.loggedOnUser, Rule('=', 83), "", "Local Group List:", Rule('-', 35),
        "Group Name ", Rule('-', 35),
    };
    lines.insert(lines.end(), content.localGroups.begin(), content.localGroups.end());
    lines.insert(lines.end(), {Rule('-', 35), "", "Local User List:", Rule('-', 74),
                               "Group                                   user   ", Rule('-', 74)});
    for (const auto& member : content.localMembers)
        lines.push_back(Left(member.first, 30) + "          " + member.second);
    lines.insert(lines.end(), {Rule('-', 74), "", Rule('=', 83)});
    return lines;
}

std::vector<std::string> SoftwareLines(const SnapshotContent& content)
{
    std::vector<std::string> lines = {
        "", Rule('-', 185),
        "Publisher                     Product Name                                                     "
        "Version             InstallDate   Language   Location",
        Rule('-', 185),
    };
    for (const Software& product : content.software)
        lines.push_back(Left(product.publisher, 30) + Left(product.name, 65) + Left(product.version, 20) +
                        Left("20061012", 14) + Left("1033", 11) + "C:\\Program Files\\" + product.name);
    lines.push_back(Rule('-', 185));
    return lines;
}

std::vector<std::string> ProcessLines(const SnapshotContent& content)
{
    std::vector<std::string> lines = {
        "", "Processes:" + std::to_string(content.processes.size()),
        "--------------------------------------------------- ",
        "Process ID         Process Name                     ",
        "--------------------------------------------------- ",
    };
    for (const Process& process : content.processes)
        lines.push_back(Left(std::to_string(process.id), 19) + process.name);
    lines.push_back("---------- Process List ( end )-------------------- ");
    return lines;
}

std::vector<std::string> ServiceLines(const SnapshotContent& content)
{
    const std::string rule = "-------------------------------------------------------------------- ";
    std::vector<std::string> lines = {"", rule, "Service Name                                                Status   ",
                                      rule};
    for (const Service& service : content.services)
        lines.push_back(Left(service.displayName, 60) + Left(service.state, 15));
    lines.push_back(rule);
    return lines;
}

std::string Sections(const SnapshotContent& content)
{
    std::vector<std::string> lines;
    const auto section = [&lines](const std::string& heading, const std::vector<std::string>& body) {
        lines.push_back("");
        lines.push_back(heading);
        lines.insert(lines.end(), body.begin(), body.end());
    };
    section("1) User Group & User Information:", UsersLines(content));
    section("2) Software Installed on the machine:", SoftwareLines(content));
    section("3) Current Running Processes:", ProcessLines(content));
    section("4) Services & Service Status:", ServiceLines(content));
    section("5) ZOR Products Installed:", content.productLines.empty() ? NoProductLines() : content.productLines);
    section("6) ZOR ODBC Driver Info:", content.odbcLines.empty() ? NoDriverLines() : content.odbcLines);
    return Lines(lines);
}

}  // namespace

std::string StartSnapshot(const std::string& eventId, const std::string& action, const SnapshotContent& content)
{
    return Lines({Rule('*', 94), "*  Snapshoot for EventID: " + eventId + " -- Before " + action + " Starts ",
                  "*" + std::string(93, ' '), Rule('*', 94)}) +
           Sections(content) +
           Lines({Rule('*', 94), "* End of Snapshoot for EventID: " + eventId + " Before " + action + " Starts  ",
                  Rule('*', 94)});
}

std::string EndSnapshot(const std::string& eventId, const std::string& action, const SnapshotContent& content)
{
    return Lines({Rule('*', 94), "*" + std::string(93, ' '),
                  "*  Snapshoot for EventID: " + eventId + " -- After " + action + " Completed ",
                  "*" + std::string(93, ' '), Rule('*', 94)}) +
           Sections(content) +
           Lines({Rule('*', 94), "*End of Snapshoot for EventID: " + eventId + " -- After " + action + " Completed ",
                  Rule('*', 94)});
}

std::string StartHead(const std::string& eventId, const std::string& computer, const std::string& os)
{
    return Lines({
        "---------- ZOR Installation History Logger ( Start )----------20061012 10:00:00",
        "EventID       :" + eventId,
        "Product       :ZOR 9.1",
        "Service Level :SL2",
        "CommandLine   :setup.exe /s",
        "",
        "System Information: ",
        Rule('=', 45),
        "Computer Name       :" + computer,
        "OS                  :" + os,
        "Type                :Workstation",
        "Service Pack        :Service Pack 2",
        "Number of processors:2",
        "CPU                 :Intel Pentium",
        Rule('=', 45),
        "",
    });
}

std::string EndTail(const std::string& action)
{
    return Lines({
        "", "", "", "",
        "Result of " + action + ":",
        Rule('=', 69),
        "Start Time                   :20061012 10:00:00",
        "End   Time                   :20061012 10:05:00",
        "ZOR Products & Build Level   :ZOR 9.1",
        "Service Level                :SL2",
        "Install Type ( GUI | Silent ):Silent",
        "Installation Action          :" + action,
        "Result                       :Success",
        "Log File Name                :C:\\setup.log",
        "Trace File Name              :",
        Rule('=', 69),
        "",
        "",
        "---------- ZOR Installation History Logger ( End ) ----------20061012 10:05:00",
    });
}

}  // namespace reportlogs
