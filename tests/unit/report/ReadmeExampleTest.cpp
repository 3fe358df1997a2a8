// The README's first example of the report's console lines is what the report
// prints for x.zip, an archive of three events of a Windows XP machine that
// this test makes: an install of copy C1, its failed upgrade and a repair
// that never ended. Where the build runs its programs natively, the example
// is checked against the program itself, the line on where the page went
// with it; everywhere, its summary lines against the library's.
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#ifdef ZOR_REPORT_PROGRAM
#include <sys/wait.h>

#include <cstdio>
#endif

#include <gtest/gtest.h>

#include "ReportTestLogs.h"
#include "report/CReportBuilder.h"
#include "report/CReportSources.h"
#include "report/TextSummary.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"
#include "zip/CZipper.h"

using namespace reportlogs;

namespace {

const char kFirstExampleLine[] = "Computer VM, Microsoft Windows XP Professional";
// The program's last line, behind the summary: where the page went.
const char kWrittenLine[] = "Report written to report.html";

// The indented lines of the README that begin with `first`, without their
// indent: an example of console output.
std::vector<std::string> ReadmeExample(const std::string& first)
{
    std::ifstream in(std::string(ZOR_GOLDEN_DIR) + "/../../README.md", std::ios::binary);
    std::vector<std::string> example;
    const std::string indent = "    ";
    for (std::string line; std::getline(in, line);) {
        if (example.empty() && line != indent + first)
            continue;
        if (line.compare(0, indent.size(), indent) != 0)
            break;
        example.push_back(line.substr(indent.size()));
    }
    return example;
}

std::vector<std::string> LinesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

// Section 5 with copy C1 of the product, its client at `version`, its
// instance PROD with the parameter Max_Users, and the global profile ZOR_HOME
// where `withHome`.
std::vector<std::string> CopyLines(const std::string& version, const std::string& maxUsers, bool withHome)
{
    std::vector<std::string> lines = {
        "", Rule('*', 93),
        "*  PART A --ZOR Installed Copies Information -- Prior to V9                                 *",
        Rule('*', 93), "There is no ZOR prior to V9 Installed ", "", Rule('*', 93),
        "*  PART B --ZOR Installed Copies Information -- V9 & Later                                  *",
        Rule('*', 93), "", "Total ZOR Copies:1", Rule('-', 45), "ZOR Copy Name", Rule('-', 45), "C1",
        Rule('-', 45), "", "ZOR Installation Copy Name:C1", Rule('-', 48), "Total Products     :1",
        "Total ZOR Instances:1", Rule('-', 48), "", "Global Profiles:", Rule('-', 120)};
    if (withHome)
        lines.push_back(Left("ZOR_HOME:", 30) + "C:\\ZOR");
    lines.insert(lines.end(),
                 {Rule('-', 120), "", "ZOR Products installed:", Rule('-', 128),
                  "Product Name                            Product Code                            "
                  "Version   Service Level       Last Modified Date",
                  Rule('-', 128),
                  Left("ZOR Client", 40) + Left("{C1-CODE}", 40) + Left(version, 10) + Left("SL2", 20) +
                      Left("20061012", 20),
                  Rule('-', 128), "", "ZOR Instances:", Rule('-', 33), "Instance Name                    ",
                  Rule('-', 33), "PROD", Rule('-', 33), "", "ZOR Instance Name:PROD", Rule('-', 68),
                  "Parameter Name                      Value                  ", Rule('-', 68),
                  Left("Max_Users", 36) + maxUsers, Rule('-', 68), ""});
    return lines;
}

const char kLogFolder[] = "C:\\Documents and Settings\\All Users\\Application Data\\TAQ\\ZORHistory\\";

const std::string kHistoryIni = std::string("[History]\r\nCount=3\r\n") +
    "[E1]\r\nAction=Install\r\nProduct=ZOR 9.0\r\nCopy_Name=C1\r\nComplete_Flag=TRUE\r\nResult=Success\r\n"
    "Start_Time=20061012 10:00:00\r\nEnd_Time=20061012 10:05:30\r\n"
    "Event_Log_File=" + kLogFolder + "C1\\E1\\ZORInstallEvent.Log\r\n"
    "[E2]\r\nAction=Upgrade\r\nProduct=ZOR 9.1\r\nCopy_Name=C1\r\nComplete_Flag=TRUE\r\nResult=1603\r\n"
    "Start_Time=20061020 09:00:00\r\nEnd_Time=20061020 09:04:10\r\n"
    "Event_Log_File=" + kLogFolder + "C1\\E2\\ZORInstallEvent.Log\r\n"
    "[E3]\r\nAction=Repair\r\nProduct=ZOR 9.1\r\nCopy_Name=(Unknown)\r\nComplete_Flag=FALSE\r\n"
    "Start_Time=20061021 08:00:00\r\nEnd_Time=\r\n"
    "Event_Log_File=" + kLogFolder + "E3\\ZORInstallEvent.Log\r\n";

const char kOS[] = "Microsoft Windows XP Professional";

// The history folder of the three events, packed into x.zip beside it.
void MakeArchive(const TestMachine& machine)
{
    const std::string history = machine.MakeHistoryFolder();
    WriteWholeFile(history + "\\History.ini", kHistoryIni);

    SnapshotContent beforeE1;
    beforeE1.software = {{"Microsoft Corporation", "Windows Installer 3.1", "3.1.4000.2435"}};
    beforeE1.processes = {{100, "explorer.exe"}, {200, "setup.exe"}};
    beforeE1.services = {{"Windows Installer", "Stopped"}};
    // The install adds the client, starts its server and agent, creates the
    // listener and the copy.
    SnapshotContent afterE1 = beforeE1;
    afterE1.software.push_back({"TAQ Inc.", "ZOR Client", "9.0.0"});
    afterE1.processes.push_back({300, "zorsrv.exe"});
    afterE1.processes.push_back({301, "zoragent.exe"});
    afterE1.services.push_back({"ZOR Listener", "Started"});
    afterE1.productLines = CopyLines("9.0.0", "50", false);
    MakeFolders(history + "\\C1\\E1");
    WriteWholeFile(history + "\\C1\\E1\\ZORInstallEvent.Log",
                   StartHead("E1", "VM", kOS) + StartSnapshot("E1", "Install", beforeE1) +
                       EndSnapshot("E1", "Install", afterE1) + EndTail("Install"));

    // The failed upgrade leaves the client at 9.1.0, the copy's product too,
    // one parameter changed and a global profile added.
    SnapshotContent afterE2 = afterE1;
    afterE2.software.back().version = "9.1.0";
    afterE2.productLines = CopyLines("9.1.0", "100", true);
    MakeFolders(history + "\\C1\\E2");
    WriteWholeFile(history + "\\C1\\E2\\ZORInstallEvent.Log",
                   StartHead("E2", "VM", kOS) + StartSnapshot("E2", "Upgrade", afterE1) + "Upgrading ZOR Client\n" +
                       EndSnapshot("E2", "Upgrade", afterE2) + EndTail("Upgrade"));

    MakeFolders(history + "\\E3");
    WriteWholeFile(history + "\\E3\\ZORInstallEvent.Log",
                   StartHead("E3", "VM", kOS) + StartSnapshot("E3", "Repair", afterE2));

    const std::string zipPath = machine.Root() + "\\x.zip";
    CZipper zipper(nullptr, nullptr, false);
    EXPECT_TRUE(zipper.Open(zipPath.c_str(), history.c_str(), false));
    EXPECT_TRUE(zipper.AddFolder(history.c_str(), false));
    zipper.Close();
}

// The current folder for as long as the object lives.
class InFolder {
public:
    explicit InFolder(const std::string& folder) : previous_(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder);
    }
    ~InFolder() { std::filesystem::current_path(previous_); }

private:
    std::filesystem::path previous_;
};

#ifdef ZOR_REPORT_PROGRAM
// A word for the shell, whatever it holds.
std::string ShellWord(const std::string& word)
{
    std::string quoted = "'";
    for (const char c : word)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

// What the command prints on its standard output; `exitCode` is its exit
// code, or -1 if it didn't exit.
std::string OutputOf(const std::string& command, int& exitCode)
{
    exitCode = -1;
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr)
        return std::string();
    std::string output;
    char buffer[4096];
    for (std::size_t got; (got = std::fread(buffer, 1, sizeof buffer, pipe)) != 0;)
        output.append(buffer, got);
    const int status = pclose(pipe);
    if (status != -1 && WIFEXITED(status))
        exitCode = WEXITSTATUS(status);
    return output;
}
#endif

}  // namespace

#ifdef ZOR_REPORT_PROGRAM
TEST(ReadmeExample, TheFirstExampleIsWhatTheProgramPrintsForTheArchive)
{
    TestMachine machine;
    MakeArchive(machine);
    // ZORHistoryReport x.zip, in the archive's folder.
    const InFolder there(machine.Root());
    int exitCode = -1;
    const std::string printed = OutputOf(ShellWord(ZOR_REPORT_PROGRAM) + " x.zip", exitCode);
    EXPECT_EQ(exitCode, 0);

    const std::vector<std::string> example = ReadmeExample(kFirstExampleLine);
    ASSERT_FALSE(example.empty()) << "the README has no example that begins with " << kFirstExampleLine;
    EXPECT_EQ(LinesOf(printed), example);
    EXPECT_TRUE(std::filesystem::is_regular_file("report.html"));
}
#endif

TEST(ReadmeExample, TheSummaryLinesOfTheFirstExampleAreTheLibrarysOwnForTheArchive)
{
    TestMachine machine;
    MakeArchive(machine);
    // ZORHistoryReport x.zip, in the archive's folder.
    const InFolder there(machine.Root());
    CReportSources sources;
    std::string reason;
    ASSERT_TRUE(sources.Open({"x.zip"}, reason)) << reason;
    ReportOfSources report;
    ASSERT_TRUE(CReportBuilder(sources).Build(report, reason)) << reason;
    std::ostringstream out;
    WriteTextSummary(report, out);

    std::vector<std::string> example = ReadmeExample(kFirstExampleLine);
    ASSERT_FALSE(example.empty()) << "the README has no example that begins with " << kFirstExampleLine;
    // The program adds the line on where the page went behind the summary.
    ASSERT_EQ(example.back(), kWrittenLine);
    example.pop_back();
    EXPECT_EQ(LinesOf(out.str()), example);
}
