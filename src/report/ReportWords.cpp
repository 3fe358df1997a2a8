#include "report/ReportWords.h"

#include <cstdio>

#include "recorder/EventTexts.h"

namespace {

const char* const kSectionKeys[kSnapshotPartCount] = {
    "users", "software", "processes", "services", "zorProducts", "odbcDrivers",
};

}  // namespace

std::string SectionTitle(std::size_t part)
{
    std::string title = texts::kSnapshotSectionTitles[part];
    if (title.compare(0, 2, ") ") == 0)
        title.erase(0, 2);
    if (!title.empty() && title.back() == ':')
        title.pop_back();
    return title;
}

const char* SectionKey(std::size_t part)
{
    return kSectionKeys[part];
}

const char* OutcomeWord(EventOutcome outcome)
{
    switch (outcome) {
    case EventOutcome::Succeeded:
        return "succeeded";
    case EventOutcome::RestartNeeded:
        return "succeeded, restart needed";
    case EventOutcome::Failed:
        return "failed";
    case EventOutcome::NoResult:
        return "no result";
    case EventOutcome::Unknown:
        return "unknown";
    case EventOutcome::NeverEnded:
        break;
    }
    return "never ended";
}

std::string OutcomeText(const EventReport& event)
{
    if (event.outcome == EventOutcome::Failed)
        return std::string("failed (") + event.record.result + ")";
    return OutcomeWord(event.outcome);
}

std::string DurationText(long long seconds)
{
    char text[64];
    if (seconds >= 3600)
        std::snprintf(text, sizeof text, "%lld h %02lld min %02lld s", seconds / 3600, seconds / 60 % 60,
                      seconds % 60);
    else if (seconds >= 60)
        std::snprintf(text, sizeof text, "%lld min %02lld s", seconds / 60, seconds % 60);
    else
        std::snprintf(text, sizeof text, "%lld s", seconds);
    return text;
}

std::string MissingSnapshots(bool hasBefore, bool hasAfter)
{
    if (!hasBefore && !hasAfter)
        return "no snapshot before or after the install";
    if (!hasBefore)
        return "no snapshot before the install";
    return "no snapshot after the install";
}

std::string ChangeCountsText(const ChangeCounts& counts)
{
    std::string text;
    for (std::size_t part = 0; part < kSnapshotPartCount; ++part) {
        text += std::string(part == 0 ? "" : " ") + SectionKey(part) + ' ';
        text += counts[part] ? std::to_string(*counts[part]) : std::string("-");
    }
    return text;
}

std::string InstallChangesText(const EventReport& event)
{
    if (!event.hasBefore && !event.hasAfter && event.eventLogName.empty())
        return kLogNotInSource;
    if (!event.changeCounts)
        return MissingSnapshots(event.hasBefore, event.hasAfter);
    return ChangeCountsText(*event.changeCounts);
}

std::size_t TotalOf(const ChangeCounts& counts)
{
    std::size_t total = 0;
    for (const std::optional<std::size_t>& count : counts)
        total += count.value_or(0);
    return total;
}

std::string ComparisonTitle(const EventComparison& comparison)
{
    const auto snapshot = [](const char* which, const EventName& event) {
        return std::string("the ") + which + " snapshot of " + EventNameText(event) + " (copy " + event.copy + ")";
    };
    return snapshot(comparison.firstBefore ? "before" : "after", comparison.first) + " against " +
           snapshot("after", comparison.second);
}

std::string EventNameText(const EventName& event)
{
    return event.source.empty() ? event.eventId : event.source + ":" + event.eventId;
}

std::string JoinedNames(const std::vector<std::string>& names)
{
    std::string joined;
    for (const std::string& name : names)
        joined += (joined.empty() ? "" : ", ") + name;
    return joined;
}
