// ZORGetInstallLog -f <zipfile>: writes the summaries of the installation
// history and packs the history folder into the zip file.
#include <string>

#include "front/Usage.h"
#include "history/AsciiText.h"
#include "history/CHistoryStore.h"

namespace {

// "-f", with the ASCII letters compared without regard to case.
bool IsFileOption(const char* argument)
{
    return EqualIgnoringAsciiCase(argument, "-f");
}

// The value behind the first "-f" that has one; empty when there is none.
std::string FindZipFileName(int argc, char** argv)
{
    for (int i = 1; i <= argc - 1; ++i) {
        if (IsFileOption(argv[i]) && i < argc - 1)
            return argv[i + 1];
    }
    return std::string();
}

}  // namespace

int main(int argc, char** argv)
{
    std::string zipFileName;
    if (argc < 3) {
        PrintUsage();
        return 1;
    }
    zipFileName = FindZipFileName(argc, argv);
    if (zipFileName.empty()) {
        PrintUsage();
        return 1;
    }
    CHistoryStore store;
    return store.CollectHistory(zipFileName) ? 0 : 1;
}
