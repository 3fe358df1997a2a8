#include "report/EventFacts.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "platform/common/AsciiCase.h"
#include "recorder/EventTexts.h"

namespace {

// The history folder's own name, by which Event_Log_File's path is cut to a
// name below the folder.
const char kHistoryFolderName[] = "\\zorhistory\\";

bool ReadsAsSuccess(const std::string& folded)
{
    return folded == "0" || folded == "success" || folded == "succeeded" || folded == "successful";
}

// Windows Installer's results of an install that succeeded and needs the
// machine restarted (3010) or has begun the restart (1641): installers pass
// them on as their own.
bool ReadsAsRestartNeeded(const std::string& folded)
{
    return folded == "3010" || folded == "1641";
}

// Days from 1 January 1970 to the date, in the proleptic Gregorian calendar.
long long DaysFromCivil(long long year, unsigned month, unsigned day)
{
    year -= month <= 2;
    const long long era = (year >= 0 ? year : year - 399) / 400;
    const unsigned yearOfEra = static_cast<unsigned>(year - era * 400);
    const unsigned dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const unsigned dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + static_cast<long long>(dayOfEra) - 719468;
}

}  // namespace

bool RecordedOnLinux(const EventRecord& event)
{
    return !event.eventLogFile.empty() && event.eventLogFile.front() == '/';
}

std::optional<long long> SecondsOfStamp(const std::string& stamp)
{
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    char end = 0;
    if (stamp.size() != 17 ||
        std::sscanf(stamp.c_str(), "%4d%2d%2d %2d:%2d:%2d%c", &year, &month, &day, &hour, &minute, &second,
                    &end) != 6)
        return std::nullopt;
    if (month < 1 || month > 12 || day < 1 || day > 31 || hour > 23 || minute > 59 || second > 60)
        return std::nullopt;
    return DaysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day)) * 86400 +
           hour * 3600 + minute * 60 + second;
}

std::optional<std::string> IsoTimeOfStamp(const std::string& stamp)
{
    if (!SecondsOfStamp(stamp))
        return std::nullopt;
    return stamp.substr(0, 4) + "-" + stamp.substr(4, 2) + "-" + stamp.substr(6, 2) + "T" + stamp.substr(9);
}

namespace {

// The folder part of a path, with its last separator, and the rest: paths
// from Windows have "\\" between their parts, from Linux "/".
std::string FolderOf(const std::string& path)
{
    const std::string::size_type separator = path.find_last_of("/\\");
    return separator == std::string::npos ? std::string() : path.substr(0, separator + 1);
}

std::string LastPartOf(const std::string& path)
{
    return path.substr(FolderOf(path).size());
}

}  // namespace


EventOutcome OutcomeOf(const EventRecord& event)
{
    // Known by its log alone, or by a section that the damage may have cut,
    // an event without the mark of its end may have ended all the same.
    if (event.completeFlag != texts::kComplete)
        return event.inHistoryIni && !event.partlyRead ? EventOutcome::NeverEnded : EventOutcome::Unknown;
    if (event.result.empty())
        return EventOutcome::NoResult;
    const std::string folded = platform::FoldedAsciiText(event.result);
    if (ReadsAsSuccess(folded))
        return EventOutcome::Succeeded;
    return ReadsAsRestartNeeded(folded) ? EventOutcome::RestartNeeded : EventOutcome::Failed;
}

std::optional<long long> SecondsBetween(const std::string& start, const std::string& end)
{
    const std::optional<long long> from = SecondsOfStamp(start);
    const std::optional<long long> to = SecondsOfStamp(end);
    if (!from || !to || *to < *from)
        return std::nullopt;
    return *to - *from;
}

bool NamesItsOwnLog(const EventRecord& event)
{
    if (event.eventLogFile.empty())
        return true;
    const std::string folder = FolderOf(event.eventLogFile);
    const std::string folderName = LastPartOf(folder.substr(0, folder.empty() ? 0 : folder.size() - 1));
    return platform::FoldedAsciiText(LastPartOf(event.eventLogFile)) ==
               platform::FoldedAsciiText(texts::kEventLogName) &&
           platform::FoldedAsciiText(folderName) == platform::FoldedAsciiText(event.eventId);
}

std::string FindEventLog(const CHistorySource& source, const EventRecord& event)
{
    std::vector<std::string> candidates;
    const std::string folded = platform::FoldedAsciiText(event.eventLogFile);
    const std::string::size_type below = folded.rfind(kHistoryFolderName);
    if (below != std::string::npos && NamesItsOwnLog(event))
        candidates.push_back(event.eventLogFile.substr(below + sizeof kHistoryFolderName - 1));
    if (!event.copyName.empty())
        candidates.push_back(event.copyName + "\\" + event.eventId + "\\" + texts::kEventLogName);
    candidates.push_back(event.eventId + "\\" + texts::kEventLogName);
    for (const std::string& candidate : candidates) {
        if (source.Contains(candidate))
            return candidate;
    }
    return std::string();
}

namespace {

// The file's first bytes up to the limit; the rest is counted as cut. An
// entry of an archive without damage is inflated no further than one byte
// past the limit: the bytes behind it are those that the archive declares.
// A damaged archive's are counted as far as they can be inflated.
void ReadInstallerLogText(const CHistorySource& source, InstallerLog& log)
{
    const std::optional<std::uint64_t> declared =
        source.Damage().empty() ? source.DeclaredSize(log.entry) : std::nullopt;
    source.Stream(
        log.entry,
        [&log](const char* bytes, std::size_t size) {
            const std::size_t kept = std::min(size, kInstallerLogTextLimit - log.text.size());
            log.text.append(bytes, kept);
            log.bytesCut += size - kept;
        },
        declared ? kInstallerLogTextLimit + 1 : CHistorySource::kFileLimit);
    if (declared && log.bytesCut != 0)
        log.bytesCut = std::max<std::uint64_t>(*declared, log.text.size() + 1) - log.text.size();
}

}  // namespace

std::vector<InstallerLog> InstallerLogsOf(const CHistorySource& source, const EventRecord& event,
                                          const std::string& eventLogName)
{
    const std::pair<const char*, const std::string*> files[] = {
        {"installer log", &event.logFile},
        {"trace file", &event.traceFile},
        {"response file", &event.responseFile},
        {"Windows Installer log", &event.wiLogFile},
    };
    std::vector<InstallerLog> logs;
    for (const auto& file : files) {
        if (file.second->empty() || *file.second == texts::kNoFile)
            continue;
        InstallerLog log;
        log.kind = file.first;
        log.path = *file.second;
        log.name = LastPartOf(log.path);
        // The event log beside it is the recorder's own, never an installer's file.
        const bool eventLog = platform::FoldedAsciiText(log.name) == platform::FoldedAsciiText(texts::kEventLogName);
        if (!eventLogName.empty() && !log.name.empty() && !eventLog &&
            source.Contains(FolderOf(eventLogName) + log.name))
            log.entry = FolderOf(eventLogName) + log.name;
        if (!log.entry.empty())
            ReadInstallerLogText(source, log);
        logs.push_back(std::move(log));
    }
    return logs;
}
