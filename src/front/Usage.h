// The tool's usage text.
#pragma once

// Writes the four lines of the usage text to standard output.
void PrintUsage();
