// The hand-written expected reports of tests/golden, with the history folder
// of the test's store put in for <HISTORY> and the platform's line ends.
#pragma once

#include <fstream>
#include <iterator>
#include <string>

#include "support/TestFiles.h"

inline std::string ExpectedReport(const std::string& goldenName, const std::string& historyFolder)
{
    std::ifstream in(std::string(ZOR_GOLDEN_DIR) + "/" + goldenName, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    const std::string placeholder = "<HISTORY>";
    for (std::string::size_type at = text.find(placeholder); at != std::string::npos;
         at = text.find(placeholder, at + historyFolder.size()))
        text.replace(at, placeholder.size(), historyFolder);
    return WithPlatformLineEnds(text);
}
