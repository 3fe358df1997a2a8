// The summary reports over any History.ini: grouping, staging and both kinds
// of Summary.txt run to their end without a fault, and the overall report is
// whole, down to its last line.
//
// Staging copies the files that the keys name, and the reports go to folders
// named by sections and copy names. So that a run touches nothing but its own
// temporary store, an input whose names climb out with ".." or whose file
// keys name an absolute path is refused, and the run's current folder is the
// history folder, where relative file names then lie. An input whose last
// section is "History" is refused too: the run stops there on purpose.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "FuzzSupport.h"
#include "history/CHistoryStore.h"
#include "history/CIniFile.h"
#include "history/HistoryPaths.h"
#include "platform/FileSystem.h"
#include "recorder/CInstallEvent.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace fs = std::filesystem;

namespace {

const char* const kOverallEnd =
    "----------------------  end of overall summary ----------------------------------------";

TestMachine& Machine()
{
    static TestMachine machine;
    return machine;
}

// Empties the history folder, which stays the current folder.
void ClearHistoryFolder()
{
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(platform::SystemPath(Machine().HistoryFolder())))
        fs::remove_all(entry.path(), ignored);
}

// A store of the input's History.ini, with a log and a trace file for the
// staging to find, and the folders of a copy and an event.
void LayDownStore(const std::uint8_t* bytes, std::size_t size)
{
    const std::string history = Machine().HistoryFolder();
    WriteWholeFile(history + "\\History.ini", std::string(reinterpret_cast<const char*>(bytes), size));
    WriteWholeFile(history + "\\setup.log", "installer log\n");
    WriteWholeFile(history + "\\trace.txt", "installer trace\n");
    MakeFolders(history + "\\C1");
    MakeFolders(history + "\\E1");
}

bool ClimbsOut(const std::string& name)
{
    return name.find("..") != std::string::npos;
}

// A file name that FileExists could take for one outside the store.
bool LeadsOutOfStore(std::string path)
{
    path.erase(std::remove(path.begin(), path.end(), '"'), path.end());
    return ClimbsOut(path) || platform::IsAbsolutePath(path);
}

bool StaysInStore(const std::vector<std::string>& sections)
{
    for (const std::string& section : sections) {
        CInstallEvent event(section);
        if (ClimbsOut(section) || ClimbsOut(event.GetCopyName()) ||
            LeadsOutOfStore(event.GetLogFileName()) || LeadsOutOfStore(event.GetTraceFile()) ||
            LeadsOutOfStore(event.GetResponseFile()))
            return false;
    }
    return true;
}

bool EndsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    fs::current_path(platform::SystemPath(Machine().MakeHistoryFolder()));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    ClearHistoryFolder();
    LayDownStore(bytes, size);
    const std::vector<std::string> sections = CIniFile(GetHistoryIniPath()).GetSectionNames();
    if ((!sections.empty() && sections.back() == "History") || !StaysInStore(sections)) {
        RemoveProfileFile(GetHistoryIniPath());
        return -1;
    }

    CHistoryStore store;
    Require(store.WriteSummary(), "a store with History.ini gets its summary");
    const std::string overall = ReadWholeFile(Machine().HistoryFolder() + "\\Summary.txt");
    Require(EndsWith(overall, kOverallEnd + std::string(platform::kTextLineEnd)),
            "the overall report ends with its last line");
    RemoveProfileFile(GetHistoryIniPath());
    return 0;
}
