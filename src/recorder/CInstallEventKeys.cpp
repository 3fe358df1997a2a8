// The stored side of an event: the constructor by section name, one accessor
// pair for each key of the event's section in History.ini, and the placeholders
// that a -start lays down before its real values.
#include <string>

#include "history/HistoryPaths.h"
#include "recorder/CInstallEvent.h"
#include "recorder/EventKeys.h"
#include "recorder/EventTexts.h"

namespace {

// Every value is read into a buffer of this size, so at most 255 characters
// come back.
const int kValueBufferSize = 256;

}  // namespace

CInstallEvent::CInstallEvent(const std::string& sectionName)
    : EventID(sectionName), Valid(false), SectionNumber(0), Ini(GetHistoryIniPath())
{
}

void CInstallEvent::SetIniFile(std::string path)
{
    Ini = CIniFile(path);
}

// Nothing is cached: each read goes to the file again.
std::string CInstallEvent::GetKey(const char* key)
{
    return Ini.GetString(EventID, key, "", kValueBufferSize);
}

void CInstallEvent::SetKey(const char* key, const std::string& value)
{
    Ini.WriteString(EventID, key, value);
}

std::string CInstallEvent::GetEventID() { return GetKey(keys::EventID); }
void CInstallEvent::SetEventID(const std::string& value) { SetKey(keys::EventID, value); }
std::string CInstallEvent::GetCommandLine() { return GetKey(keys::CommandLine); }
void CInstallEvent::SetCommandLine(const std::string& value) { SetKey(keys::CommandLine, value); }
std::string CInstallEvent::GetStartTime() { return GetKey(keys::StartTime); }
void CInstallEvent::SetStartTime(const std::string& value) { SetKey(keys::StartTime, value); }
std::string CInstallEvent::GetEndTime() { return GetKey(keys::EndTime); }
void CInstallEvent::SetEndTime(const std::string& value) { SetKey(keys::EndTime, value); }
std::string CInstallEvent::GetAction() { return GetKey(keys::Action); }
void CInstallEvent::SetAction(const std::string& value) { SetKey(keys::Action, value); }
std::string CInstallEvent::GetType() { return GetKey(keys::Type); }
void CInstallEvent::SetType(const std::string& value) { SetKey(keys::Type, value); }
std::string CInstallEvent::GetProduct() { return GetKey(keys::Product); }
void CInstallEvent::SetProduct(const std::string& value) { SetKey(keys::Product, value); }
std::string CInstallEvent::GetVersion() { return GetKey(keys::Version); }
void CInstallEvent::SetVersion(const std::string& value) { SetKey(keys::Version, value); }
std::string CInstallEvent::GetServiceLevel() { return GetKey(keys::ServiceLevel); }
void CInstallEvent::SetServiceLevel(const std::string& value) { SetKey(keys::ServiceLevel, value); }
std::string CInstallEvent::GetPath() { return GetKey(keys::Path); }
void CInstallEvent::SetPath(const std::string& value) { SetKey(keys::Path, value); }
std::string CInstallEvent::GetCopyName() { return GetKey(keys::CopyName); }
void CInstallEvent::SetCopyName(const std::string& value) { SetKey(keys::CopyName, value); }
std::string CInstallEvent::GetCompleteFlag() { return GetKey(keys::CompleteFlag); }
void CInstallEvent::SetCompleteFlag(const std::string& value) { SetKey(keys::CompleteFlag, value); }
std::string CInstallEvent::GetLogFileName() { return GetKey(keys::LogFileName); }
void CInstallEvent::SetLogFileName(const std::string& value) { SetKey(keys::LogFileName, value); }
std::string CInstallEvent::GetTraceFile() { return GetKey(keys::TraceFile); }
void CInstallEvent::SetTraceFile(const std::string& value) { SetKey(keys::TraceFile, value); }
std::string CInstallEvent::GetResponseFile() { return GetKey(keys::ResponseFile); }
void CInstallEvent::SetResponseFile(const std::string& value) { SetKey(keys::ResponseFile, value); }
std::string CInstallEvent::GetEventLogFile() { return GetKey(keys::EventLogFile); }
void CInstallEvent::SetEventLogFile(const std::string& value) { SetKey(keys::EventLogFile, value); }
std::string CInstallEvent::GetResult() { return GetKey(keys::Result); }
void CInstallEvent::SetResult(const std::string& value) { SetKey(keys::Result, value); }
std::string CInstallEvent::GetWiLogFile() { return GetKey(keys::WiLogFile); }
void CInstallEvent::SetWiLogFile(const std::string& value) { SetKey(keys::WiLogFile, value); }

// The first pass of a -start: every key of the section in its final order,
// with placeholders that the second pass overwrites. The copy stays
// "(Unknown)" until the -end names it.
void CInstallEvent::InitializeSection()
{
    const std::string empty;
    SetEventID(EventID);
    SetCommandLine(empty);
    SetStartTime(empty);
    SetEndTime(empty);
    SetAction(empty);
    SetType(empty);
    SetProduct(empty);
    SetVersion(empty);
    SetServiceLevel(empty);
    SetPath(empty);
    SetCopyName(texts::kUnknownCopy);
    SetCompleteFlag(texts::kIncomplete);
    SetLogFileName(texts::kNoFile);
    SetTraceFile(texts::kNoFile);
    SetResponseFile(texts::kNoFile);
    SetEventLogFile(EventLogPath);
    SetResult(empty);
}
