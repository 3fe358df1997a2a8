#include "platform/common/AsciiCase.h"

#include <algorithm>

namespace platform {

char FoldedAscii(char c)
{
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string FoldedAsciiText(const std::string& text)
{
    std::string folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), FoldedAscii);
    return folded;
}

bool SameIgnoringAsciiCase(const std::string& text, const std::string& other)
{
    return text.size() == other.size() &&
           std::equal(text.begin(), text.end(), other.begin(),
                      [](char one, char two) { return FoldedAscii(one) == FoldedAscii(two); });
}

}  // namespace platform
