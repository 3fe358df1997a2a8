// Names that compare as the system compares them: the ASCII letters without
// regard to case, every other byte as it is.
#pragma once

#include <string>

namespace platform {

// The letter in lower case; any other byte unchanged.
char FoldedAscii(char c);

std::string FoldedAsciiText(const std::string& text);

bool SameIgnoringAsciiCase(const std::string& text, const std::string& other);

}  // namespace platform
