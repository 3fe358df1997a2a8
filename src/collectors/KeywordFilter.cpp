#include "collectors/KeywordFilter.h"

const std::string ProcessKeywords[3] = {"ALL", "zor", "msiexec"};
const std::string ProductKeywords[4] = {"Microsoft", "TAQ", "InstallShield", "Tessaly Software"};
const std::string ServiceKeywords[2] = {"ZOR", "Windows Installer"};

namespace {

const char kAll[] = "ALL";

bool IsAllSwitch(const std::string& keyword, AllSwitch allSwitch)
{
    if (allSwitch == AllSwitch::WholeWord)
        return keyword == kAll;
    return keyword.compare(0, sizeof kAll - 1, kAll) == 0;
}

}  // namespace

bool MatchesKeywords(const std::string& text, const std::string* keywords, int count,
                     AllSwitch allSwitch)
{
    if (IsAllSwitch(keywords[0], allSwitch))
        return true;
    for (int i = 0; i < count; ++i) {
        if (text.find(keywords[i]) != std::string::npos)
            return true;
    }
    return false;
}
