// Whether the test programs run as Windows programs under Wine. Wine tells
// every program that it starts through its environment, and in a few matters
// it is more lenient than Windows: where a test proves such a matter, it can
// only be proved natively and on Windows itself.
#pragma once

#include <cstdlib>

inline bool RunsUnderWine()
{
    return std::getenv("WINECONFIGDIR") != nullptr;
}

// Why a test of a folder move while a file below it is held open is skipped.
inline constexpr char kWineMovesHeldFolders[] =
    "Wine moves a folder while a file below it is held open, which Windows refuses";
