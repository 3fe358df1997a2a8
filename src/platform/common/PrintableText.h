// Text read from a system whose names may hold control characters, made fit
// for a line of a report.
#pragma once

#include <string>

namespace platform {

// The text with each control character (the bytes below 32, and 127) written
// as "?", so that it stays on its one line; every other byte unchanged.
std::string PrintableText(std::string text);

}  // namespace platform
