#include "platform/common/PrintableText.h"

namespace platform {

std::string PrintableText(std::string text)
{
    for (char& c : text) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F)
            c = '?';
    }
    return text;
}

}  // namespace platform
