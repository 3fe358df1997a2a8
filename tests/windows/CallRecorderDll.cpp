// Calls the exports of ZORRecorder.dll as an installer does: a -start, a
// message and an -end of one event, two calls whose options don't suffice, and
// a custom action outside any install session, which has no data and must
// still succeed. Then reads the store that the calls left. Argument: the
// history folder.
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "recorder/entry/ZORRecorder.h"

namespace {

const char* const kEventID = "CallRecorderDll";

int failures = 0;

void Expect(bool condition, const std::string& what)
{
    if (!condition) {
        std::cout << "FAIL: " << what << std::endl;
        ++failures;
    }
}

// An argument list as a program gets it, with a null pointer behind the last.
int Call(std::vector<std::string> options)
{
    options.insert(options.begin(), "installer.exe");
    std::vector<char*> elements;
    for (std::string& option : options)
        elements.push_back(&option[0]);
    elements.push_back(nullptr);
    return ZORRecordEvent(static_cast<int>(options.size()), elements.data());
}

std::vector<std::string> Lines(const std::string& path)
{
    std::ifstream in(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> SectionLines(const std::string& iniPath, const std::string& section)
{
    std::vector<std::string> lines;
    bool inSection = false;
    for (const std::string& line : Lines(iniPath)) {
        if (!line.empty() && line[0] == '[')
            inSection = line == "[" + section + "]";
        else if (inSection && !line.empty())
            lines.push_back(line);
    }
    return lines;
}

int StoredCount(const std::string& iniPath)
{
    for (const std::string& line : SectionLines(iniPath, "History")) {
        if (line.compare(0, 6, "Count=") == 0)
            return std::stoi(line.substr(6));
    }
    return 0;
}

bool Holds(const std::vector<std::string>& lines, const std::string& line)
{
    for (const std::string& candidate : lines) {
        if (candidate == line)
            return true;
    }
    return false;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cout << "usage: CallRecorderDll <history folder>" << std::endl;
        return 2;
    }
    const std::string historyFolder = argv[1];
    const std::string iniPath = historyFolder + "\\History.ini";
    const int countBefore = StoredCount(iniPath);

    Expect(Call({"-start", kEventID, "-Product", "ZOR Server", "-Action", "Install"}) == 0,
           "-start returns 0");
    Expect(Call({"-logmessage", kEventID, "-message", "message through the DLL"}) == 0,
           "-logmessage returns 0");
    Expect(Call({"-end", kEventID, "-Result", "Success"}) == 0, "-end returns 0");
    Expect(Call({"-Product", "no mode option"}) == 2, "a list without a mode returns 2");
    Expect(Call({"-start", ""}) == 2, "an empty EventID returns 2");
    Expect(ZORRecordEventAction(0) == 0, "the custom action without a session succeeds");

    Expect(StoredCount(iniPath) == countBefore + 1, "Count grew by one");
    const std::vector<std::string> section = SectionLines(iniPath, kEventID);
    Expect(Holds(section, std::string("Event_ID=") + kEventID), "Event_ID is stored");
    Expect(Holds(section, "Product=ZOR Server"), "Product is stored");
    Expect(Holds(section, "Action=Install"), "Action is stored");
    Expect(Holds(section, "Complete_Flag=TRUE"), "the event is complete");
    Expect(Holds(section, "Result=Success"), "Result is stored");
    const std::string logPath = historyFolder + "\\" + kEventID + "\\ZORInstallEvent.Log";
    Expect(Holds(section, "Event_Log_File=" + logPath), "Event_Log_File names the log");
    Expect(Holds(Lines(logPath), "message through the DLL"), "the log holds the message");

    std::cout << (failures == 0 ? "all checks passed" : "checks failed") << std::endl;
    return failures == 0 ? 0 : 1;
}
