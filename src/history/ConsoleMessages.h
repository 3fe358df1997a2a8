// The recorder's message about a folder of the store that it could not make.
#pragma once

#include <string>

// Writes " Failed to create path:" and the path to standard output, with no
// line end, so that whatever is written next follows on the same line.
void PrintFailedToCreatePath(const std::string& path);
