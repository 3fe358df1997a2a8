// A test of the process report on its own scripted machine, with the event log
// opened on a file of its own and the log's format flags as on a fresh stream.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "collectors/CProcessList.h"
#include "platform/scripted/ScriptedMachine.h"
#include "recorder/CLogger.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

class ProcessReportTest : public ::testing::Test {
protected:
    ProcessReportTest()
    {
        CLogger& log = CLogger::Instance();
        log.Close();
        log.clear();
        const std::ostringstream fresh;
        log.flags(fresh.flags());
        log.fill(fresh.fill());
        log.width(0);
        log.Open(LogPath(), static_cast<int>(std::ios_base::out));
    }

    ~ProcessReportTest() override { CLogger::Instance().Close(); }

    platform::scripted::Processes& Processes() { return machine.Machine().processes; }

    // Windows XP: the process-status library.
    void OnWindowsNT() { SetVersion(5, 1, 2); }
    // Windows 98: the snapshot calls.
    void OnWindows98() { SetVersion(4, 10, 1); }

    void SetVersion(std::uint32_t major, std::uint32_t minor, std::uint32_t platformId)
    {
        machine.Machine().version.majorVersion = major;
        machine.Machine().version.minorVersion = minor;
        machine.Machine().version.platformId = platformId;
    }

    // A process that opens, has a module list and answers with its name.
    void AddProcess(std::uint32_t id, const std::string& name)
    {
        platform::scripted::ScriptedProcess process;
        process.id = id;
        process.baseName = name;
        Processes().processes.push_back(process);
    }

    platform::scripted::ScriptedProcess& LastProcess() { return Processes().processes.back(); }

    void AddSnapshotEntry(std::uint32_t id, const std::string& exeFile, std::uint32_t size = 296)
    {
        platform::scripted::ScriptedSnapshotEntry entry;
        entry.size = size;
        entry.processId = id;
        entry.exeFile = exeFile;
        Processes().snapshotEntries.push_back(entry);
    }

    // Writes the report of `list` and gives the whole log.
    std::string WrittenReport(CProcessList& list)
    {
        list.Write();
        CLogger::Instance().Close();
        return ReadWholeFile(LogPath());
    }

    // Collects and writes one list, as a snapshot section does.
    std::string CollectedReport()
    {
        CProcessList list;
        list.Collect();
        return WrittenReport(list);
    }

    bool WasCalled(const std::string& call) const
    {
        const auto& calls = machine_calls();
        for (const std::string& made : calls) {
            if (made == call)
                return true;
        }
        return false;
    }

    // The calls that begin with `prefix`, in order.
    std::vector<std::string> CallsStartingWith(const std::string& prefix) const
    {
        std::vector<std::string> found;
        for (const std::string& made : machine_calls()) {
            if (made.compare(0, prefix.size(), prefix) == 0)
                found.push_back(made);
        }
        return found;
    }

    TestMachine machine;

private:
    std::string LogPath() const { return machine.Root() + "\\processes.log"; }
    const std::vector<std::string>& machine_calls() const
    {
        return platform::scripted::CurrentMachine().processes.calls;
    }
};

// A list of the given records, as Collect would leave it.
inline CProcessList ListOf(std::initializer_list<ProcessEntry> entries)
{
    CProcessList list;
    list.processes.assign(entries);
    return list;
}
