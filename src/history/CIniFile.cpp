#include "history/CIniFile.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/Profile.h"

namespace {

// The length of the zero-ended text at `begin`, within the buffer.
std::size_t TextLength(const char* begin, const char* end)
{
    return static_cast<std::size_t>(std::find(begin, end, '\0') - begin);
}

// The section names of History.ini are read into a buffer of this size; names
// beyond it are lost without notice, a limit of the format.
constexpr std::uint32_t kSectionNamesBufferSize = 0x2800;

}  // namespace

CIniFile::CIniFile(const std::string& path) : Path(path) {}

std::vector<std::string> CIniFile::GetSectionNames()
{
    // Zeroed, so that the walk below ends inside the buffer whatever the call
    // leaves in its last bytes.
    std::vector<char> buffer(kSectionNamesBufferSize, '\0');
    platform::GetProfileSectionNames(buffer.data(), kSectionNamesBufferSize, Path);
    std::vector<std::string> names;
    std::size_t at = 0;
    while (at < buffer.size()) {
        const std::size_t length = TextLength(&buffer[at], buffer.data() + buffer.size());
        if (length == 0)
            break;
        names.emplace_back(&buffer[at], length);
        at += length + 1;
    }
    return names;
}

std::string CIniFile::GetString(const std::string& section, const std::string& key,
                                const std::string& defaultValue, int size)
{
    if (size <= 0)
        return std::string();
    std::vector<char> buffer(static_cast<std::size_t>(size), '\0');
    platform::GetProfileString(section.c_str(), key.c_str(), defaultValue.c_str(), buffer.data(),
                               static_cast<std::uint32_t>(size), Path);
    return std::string(buffer.data(), TextLength(buffer.data(), buffer.data() + buffer.size()));
}

int CIniFile::WriteString(const std::string& section, const std::string& key,
                          const std::string& value)
{
    platform::WriteProfileString(section.c_str(), key.c_str(), value.c_str(), Path);
    return 0;
}

int CIniFile::GetInt(const std::string& section, const std::string& key, int& defaultValue)
{
    return static_cast<int>(platform::GetProfileInt(section.c_str(), key.c_str(), defaultValue, Path));
}

int CIniFile::WriteInt(const std::string& section, const std::string& key, int& value)
{
    const std::string text = std::to_string(value);
    return platform::WriteProfileString(section.c_str(), key.c_str(), text.c_str(), Path) ? 1 : 0;
}
