#include "recorder/EventIdMaker.h"

#include <cstdio>
#include <random>

namespace {

bool KeptInName(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           c == '-' || c == '_';
}

std::string KeptCharacters(const std::string& text)
{
    std::string kept;
    for (const char c : text) {
        if (kept.size() < kEventNameLength && KeptInName(c))
            kept += c;
    }
    return kept;
}

}  // namespace

std::string ShortEventName(const std::vector<std::string>& candidates)
{
    for (const std::string& candidate : candidates) {
        const std::string name = KeptCharacters(candidate);
        if (!name.empty())
            return name;
    }
    return "ZOR";
}

std::string MakeEventId(const std::string& name, const std::tm& local, unsigned random)
{
    // 14 digits of time, two dashes, four hex digits and the terminator; each
    // field is cut to its width, as a calendar field always fits.
    char stamp[32] = {};
    std::snprintf(stamp, sizeof stamp, "-%04d%02d%02d-%02d%02d%02d-%04x",
                  (local.tm_year + 1900) % 10000, (local.tm_mon + 1) % 100, local.tm_mday % 100,
                  local.tm_hour % 100, local.tm_min % 100, local.tm_sec % 100, random & 0xFFFFu);
    return name + stamp;
}

std::string NewEventId(const std::vector<std::string>& candidates)
{
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    if (const std::tm* fields = std::localtime(&now))
        local = *fields;
    std::random_device source;
    return MakeEventId(ShortEventName(candidates), local, source());
}
