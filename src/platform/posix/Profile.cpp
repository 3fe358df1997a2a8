// The private-profile calls on POSIX: what GetPrivateProfileSectionNamesA,
// GetPrivateProfileStringA, GetPrivateProfileIntA and
// WritePrivateProfileStringA answer and write, byte for byte, over the parsed
// file that ProfileFileCache keeps.
#include "platform/Profile.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/common/ProfileDocument.h"
#include "platform/posix/PosixFiles.h"
#include "platform/posix/ProfileFileCache.h"

namespace platform {

namespace {

using posix::ProfileFileCache;
using posix::ProfileOpenResult;

// GetPrivateProfileIntA reads the value into a buffer of this many characters.
constexpr std::uint32_t kNumberBufferSize = 30;

// lstrcpyn: what fits in `size` bytes with a terminator.
std::string Cut(const std::string& text, std::uint32_t size)
{
    return text.substr(0, size - 1);
}

bool IsQuote(char c)
{
    return c == '"' || c == '\'';
}

// A value between two equal quotes is handed out without them. The closing
// quote goes as the last character of what was copied, whenever the buffer
// could have held the text behind the opening quote: so a buffer exactly
// that long loses the value's last character as well.
std::string HandedOut(const std::string& value, std::uint32_t size)
{
    const bool quoted = value.size() >= 2 && IsQuote(value.front()) && value.back() == value.front();
    const std::string text = quoted ? value.substr(1) : value;
    std::string copy = Cut(text, size);
    if (quoted && size >= text.size() && !copy.empty())
        copy.pop_back();
    return copy;
}

// The narrow call hands over the text and one terminator, nothing more.
std::uint32_t Deliver(const std::string& text, char* buffer)
{
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return static_cast<std::uint32_t>(text.size());
}

// The default as the call takes it: blanks (only blanks) at its end dropped,
// though never its first character, so that a default of blanks alone
// becomes one blank.
std::string DefaultValue(const char* defaultValue)
{
    std::string text = defaultValue != nullptr ? defaultValue : "";
    std::size_t length = text.size();
    while (length > 1 && text[length - 1] == ' ')
        --length;
    text.erase(length);
    return text;
}

int DigitValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'Z')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'z')
        return c - 'a' + 10;
    return -1;
}

// The number at the start of a value, as the system's string-to-integer
// conversion reads it: control characters and blanks skipped, a sign, then
// "0b", "0o" or "0x" for another base, then digits up to the first other
// character, counted modulo 2^32.
std::uint32_t NumberIn(const std::string& text)
{
    std::size_t at = 0;
    while (at < text.size() && static_cast<unsigned char>(text[at]) <= ' ')
        ++at;
    bool negative = false;
    if (at < text.size() && (text[at] == '+' || text[at] == '-'))
        negative = text[at++] == '-';
    std::uint32_t base = 10;
    if (at + 1 < text.size() && text[at] == '0') {
        const char marker = text[at + 1];
        base = marker == 'b' ? 2 : marker == 'o' ? 8 : marker == 'x' ? 16 : 10;
        if (base != 10)
            at += 2;
    }
    std::uint32_t total = 0;
    for (; at < text.size(); ++at) {
        const int digit = DigitValue(text[at]);
        if (digit < 0 || static_cast<std::uint32_t>(digit) >= base)
            break;
        total = total * base + static_cast<std::uint32_t>(digit);
    }
    return negative ? 0u - total : total;
}

// The names as the wide call lays them out in a buffer of `size`
// characters: each name and its zero, and one zero behind the last. A name
// that doesn't fit is cut so that both zeros still fit; the result is then
// size - 2.
std::uint32_t LayOutSectionNames(const ProfileDocument& document, std::vector<char>& wide)
{
    const std::uint32_t size = static_cast<std::uint32_t>(wide.size());
    std::uint32_t free = size - 1;
    std::uint32_t at = 0;
    for (const ProfileSection& section : document.Sections()) {
        if (section.name.empty())
            continue;
        const std::uint32_t needed = static_cast<std::uint32_t>(section.name.size()) + 1;
        if (needed >= free) {
            std::memcpy(&wide[at], section.name.data(), free - 1);
            at += free - 1;
            wide[at++] = '\0';
            wide[at] = '\0';
            return size - 2;
        }
        std::memcpy(&wide[at], section.name.c_str(), needed);
        at += needed;
        free -= needed;
    }
    wide[at] = '\0';
    return at;
}

// The file for a read. Where it is there as spelt, SystemPath gives that very
// path, so only a file that isn't there as spelt has the case of its names
// looked up, which costs a look at every level of the path: a summary reads
// the file many times over, and each read then needs one look, not two.
ProfileOpenResult OpenForReading(const std::string& path, const ProfileDocument*& document)
{
    ProfileFileCache& cache = ProfileFileCache::Instance();
    if (cache.Open(posix::WithSystemSeparators(path), document) == ProfileOpenResult::Opened)
        return ProfileOpenResult::Opened;
    return cache.Open(SystemPath(path), document);
}

}  // namespace

std::uint32_t GetProfileSectionNames(char* buffer, std::uint32_t size, const std::string& path)
{
    if (buffer == nullptr || size == 0)
        return 0;
    const ProfileDocument* document = nullptr;
    std::uint32_t count = 0;
    std::vector<char> wide(size, '\0');
    if (size > 1 && OpenForReading(path, document) != ProfileOpenResult::Failed)
        count = LayOutSectionNames(*document, wide);
    if (count == 0) {
        buffer[0] = '\0';
        return 0;
    }
    // The narrow call converts the names and the zero behind them into at
    // most size - 1 bytes: the buffer's last byte is never written.
    std::memcpy(buffer, wide.data(), std::min<std::uint32_t>(count + 1, size - 1));
    return count;
}

std::uint32_t GetProfileString(const char* section, const char* key, const char* defaultValue,
                               char* buffer, std::uint32_t size, const std::string& path)
{
    if (buffer == nullptr || size == 0)
        return 0;
    if (section == nullptr || key == nullptr) {
        buffer[0] = '\0';
        return 0;
    }
    const std::string fallback = DefaultValue(defaultValue);
    const ProfileDocument* document = nullptr;
    if (OpenForReading(path, document) == ProfileOpenResult::Failed)
        return Deliver(Cut(fallback, size), buffer);
    const ProfileEntry* entry = document->Find(section, key);
    return Deliver(HandedOut(entry != nullptr && entry->hasValue ? entry->value : fallback, size),
                   buffer);
}

std::uint32_t GetProfileInt(const char* section, const char* key, int defaultValue,
                            const std::string& path)
{
    char buffer[kNumberBufferSize];
    if (GetProfileString(section, key, "", buffer, kNumberBufferSize, path) == 0)
        return static_cast<std::uint32_t>(defaultValue);
    return NumberIn(buffer);
}

bool WriteProfileString(const char* section, const char* key, const char* value,
                        const std::string& path)
{
    if (section == nullptr || key == nullptr || value == nullptr)
        return false;
    return ProfileFileCache::Instance().Change(SystemPath(path), [&](ProfileDocument& document) {
        return document.Assign(section, key, value);
    });
}

// As a read of a key, the file as spelt first, and only then its case looked up.
bool ReadProfileFile(const std::string& path, std::string& content)
{
    ProfileFileCache& cache = ProfileFileCache::Instance();
    return cache.ReadContent(posix::WithSystemSeparators(path), content) ||
           cache.ReadContent(SystemPath(path), content);
}

}  // namespace platform
