// One installation event: its options, its section of History.ini with one
// accessor pair per key, and the writers of its event log.
#pragma once

#include <string>

#include "history/CIniFile.h"

class CInstallEvent {
public:
    // An event from the recorder's argument list; element 0 is skipped.
    CInstallEvent(int& argc, char** argv);
    // A stored event, read by its section name; parses nothing, writes nothing.
    explicit CInstallEvent(const std::string& sectionName);

    // Carries out the call of this event's mode.
    void Dispatch();

    // Copies the event's log, trace and response file into its folder.
    void StageFiles();

    // Replaces the path of History.ini that the accessors use.
    void SetIniFile(std::string path);

    std::string GetEventID();
    void SetEventID(const std::string& value);
    std::string GetCommandLine();
    void SetCommandLine(const std::string& value);
    std::string GetStartTime();
    void SetStartTime(const std::string& value);
    std::string GetEndTime();
    void SetEndTime(const std::string& value);
    std::string GetAction();
    void SetAction(const std::string& value);
    std::string GetType();
    void SetType(const std::string& value);
    std::string GetProduct();
    void SetProduct(const std::string& value);
    std::string GetVersion();
    void SetVersion(const std::string& value);
    std::string GetServiceLevel();
    void SetServiceLevel(const std::string& value);
    std::string GetPath();
    void SetPath(const std::string& value);
    std::string GetCopyName();
    void SetCopyName(const std::string& value);
    std::string GetCompleteFlag();
    void SetCompleteFlag(const std::string& value);
    std::string GetLogFileName();
    void SetLogFileName(const std::string& value);
    std::string GetTraceFile();
    void SetTraceFile(const std::string& value);
    std::string GetResponseFile();
    void SetResponseFile(const std::string& value);
    std::string GetEventLogFile();
    void SetEventLogFile(const std::string& value);
    std::string GetResult();
    void SetResult(const std::string& value);
    std::string GetWiLogFile();
    void SetWiLogFile(const std::string& value);

    std::string EventID;
    bool Valid;
    std::string Mode;
    std::string EventLogPath;
    std::string LogFileName;
    std::string TraceFile;
    std::string ResponseFile;
    std::string CommandLine;
    std::string EventFolder;
    std::string CopyName;
    std::string Message;
    std::string Action;
    std::string Type;
    std::string Path;
    std::string Result;
    std::string Product;
    std::string Version;
    std::string ServiceLevel;
    int SectionNumber;
    CIniFile Ini;

private:
    std::string GetKey(const char* key);
    void SetKey(const char* key, const std::string& value);

    void InitializeSection();
    void MakeEventFolder();

    bool OpenLog();
    void WriteEventStart();
    void WriteEventEnd();
    void WriteStartBanner();
    void WriteEndBanner();
    void WriteLogMessage();
    void WriteResultBlock();
    void HandOver();

    void WriteSystemInfo();
    void WriteSnapshot();
    void WriteSnapshotFrame();
    void WriteSnapshotClosing();
    void WriteSectionHeading(const char* title);
    void WriteUsers();
    void WriteSoftware();
    void WriteProcesses();
    void WriteServices();
    void WriteZORProducts();
    void WriteODBCDrivers();
};

// The text behind the last separator of a path (platform::kFileNameSeparators);
// the whole path if it has none.
std::string FileNameOf(std::string path);
