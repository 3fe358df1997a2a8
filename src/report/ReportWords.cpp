#include "report/ReportWords.h"

#include <cstdio>

#include "recorder/EventTexts.h"

namespace {

const char* const kSectionKeys[kSnapshotPartCount] = {
    "users", "software", "processes", "services", "zorProducts", "odbcDrivers",
};

// Windows-1252 at 0x80 to 0x9F; 0 where the code page has no character.
const unsigned short kWindows1252High[32] = {
    0x20AC, 0, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0, 0x017D, 0,
    0, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0, 0x017E,
    0x0178,
};

constexpr unsigned kReplacement = 0xFFFD;

void AppendUtf8(std::string& out, unsigned code)
{
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

unsigned CodeOf(unsigned char byte)
{
    if (byte < 0x20 && byte != '\t')
        return kReplacement;
    if (byte >= 0x80 && byte < 0xA0)
        return kWindows1252High[byte - 0x80] != 0 ? kWindows1252High[byte - 0x80] : kReplacement;
    return byte == 0x7F ? kReplacement : byte;
}

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

std::string Utf8FromAnsi(const std::string& text)
{
    std::string out;
    out.reserve(text.size());
    for (const char c : text)
        AppendUtf8(out, CodeOf(static_cast<unsigned char>(c)));
    return out;
}
