// Text conversions on POSIX systems, whose narrow text is UTF-8.
#include "platform/TextConversion.h"

#include <cstring>

namespace platform {

namespace {

void AppendUtf8(char32_t code, std::string& out)
{
    if (code < 0x80) {
        out.push_back(static_cast<char>(code));
    } else if (code < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (code >> 6)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else if (code < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (code >> 12)));
        out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (code >> 18)));
        out.push_back(static_cast<char>(0x80 | ((code >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((code >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (code & 0x3F)));
    }
}

// UTF-16 to UTF-8; an unpaired surrogate becomes U+FFFD, as the system's
// default character would stand for it.
std::string Utf8Of(const std::u16string& wide)
{
    std::string out;
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char32_t code = wide[i];
        if (code >= 0xD800 && code <= 0xDBFF && i + 1 < wide.size() && wide[i + 1] >= 0xDC00 &&
            wide[i + 1] <= 0xDFFF) {
            code = 0x10000 + ((code - 0xD800) << 10) + (wide[i + 1] - 0xDC00);
            ++i;
        } else if (code >= 0xD800 && code <= 0xDFFF) {
            code = 0xFFFD;
        }
        AppendUtf8(code, out);
    }
    return out;
}

// UTF-8 to UTF-16; a byte that starts no valid sequence stands for itself, as
// a Latin-1 character.
std::u16string Utf16Of(const std::string& text)
{
    std::u16string out;
    std::size_t i = 0;
    while (i < text.size()) {
        const unsigned char lead = static_cast<unsigned char>(text[i]);
        int extra = lead >= 0xF0 && lead < 0xF8 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
        if (lead >= 0x80 && lead < 0xC0)
            extra = 0;
        char32_t code = extra == 0 ? lead : lead & (0x3F >> extra);
        bool valid = i + extra < text.size() || extra == 0;
        for (int k = 1; valid && k <= extra; ++k) {
            const unsigned char next = static_cast<unsigned char>(text[i + k]);
            valid = (next & 0xC0) == 0x80;
            code = (code << 6) | (next & 0x3F);
        }
        if (!valid) {
            code = lead;
            extra = 0;
        }
        if (code >= 0x10000) {
            code -= 0x10000;
            out.push_back(static_cast<char16_t>(0xD800 + (code >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
        } else {
            out.push_back(static_cast<char16_t>(code));
        }
        i += 1 + extra;
    }
    return out;
}

}  // namespace

std::uint32_t WideToNarrow(const std::u16string& wide, char* buffer, int bufferSize)
{
    const std::string narrow = Utf8Of(wide.substr(0, wide.find(u'\0')));
    if (bufferSize <= 0 || narrow.size() + 1 > static_cast<std::size_t>(bufferSize))
        return kStatusInsufficientBuffer;
    std::memcpy(buffer, narrow.c_str(), narrow.size() + 1);
    return 0;
}

bool NarrowToWide(const std::string& text, std::size_t capacity, std::u16string& wide)
{
    wide = Utf16Of(text.substr(0, text.find('\0')));
    if (wide.size() + 1 > capacity) {
        wide.clear();
        return false;
    }
    return true;
}

}  // namespace platform
