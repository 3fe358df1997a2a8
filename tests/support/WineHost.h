// Whether the test programs run as Windows programs under Wine. Wine tells
// every program that it starts through its environment, and in a few matters
// it is more lenient than Windows: where a test proves such a matter, it can
// only be proved natively and on Windows itself.
#pragma once

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "platform/FileSystem.h"
#include "support/TestFiles.h"

inline bool RunsUnderWine()
{
    return std::getenv("WINECONFIGDIR") != nullptr;
}

// Why a test of a folder move while a file below it is held open is skipped.
inline constexpr char kWineMovesHeldFolders[] =
    "Wine moves a folder while a file below it is held open, which Windows refuses";

// Whether Wine lets this process write a file whose read-only attribute is
// set: run as root it does, as Windows never does for anyone. Asked once, of
// a file of its own in the temporary folder.
inline bool WineWritesReadOnlyFiles()
{
    static const bool writes = [] {
        if (!RunsUnderWine())
            return false;
        const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
        const std::string probe = (std::filesystem::temp_directory_path() /
                                   ("zor-read-only-probe-" + std::to_string(ticks))).string();
        WriteWholeFile(probe, "probe");
        bool opened = false;
        {
            const ReadOnlyWhileAlive readOnly(probe);
            opened = std::ofstream(platform::SystemPath(probe), std::ios::app).is_open();
        }
        std::error_code ignored;
        std::filesystem::remove(platform::SystemPath(probe), ignored);
        return opened;
    }();
    return writes;
}

// Why a test of the read-only attribute is skipped: it is proved natively, as
// root and as an unprivileged user, and on Windows itself.
inline constexpr char kWineWritesReadOnlyFiles[] =
    "Wine, run as root, writes a file whose attribute is read-only, which Windows refuses";
