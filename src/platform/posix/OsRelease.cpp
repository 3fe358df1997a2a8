#include "platform/posix/OsRelease.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {
namespace posix {

namespace {

const char kPrettyNameKey[] = "PRETTY_NAME=";
const char kDefaultPrettyName[] = "Linux";
constexpr std::size_t kMostBytesRead = 64 * 1024;

// The characters that a backslash escapes inside double quotes, as in the shell.
bool EscapedInDoubleQuotes(char c)
{
    return c == '"' || c == '\\' || c == '$' || c == '`';
}

// A value in double quotes from `at`, behind the opening quote. False when the
// quote isn't closed.
bool ReadDoubleQuoted(const std::string& line, std::size_t at, std::string& value)
{
    for (; at < line.size(); ++at) {
        if (line[at] == '"')
            return true;
        if (line[at] == '\\' && at + 1 < line.size() && EscapedInDoubleQuotes(line[at + 1]))
            ++at;
        value += line[at];
    }
    return false;
}

// A value in single quotes from `at`, behind the opening quote: no escapes.
bool ReadSingleQuoted(const std::string& line, std::size_t at, std::string& value)
{
    const std::size_t close = line.find('\'', at);
    if (close == std::string::npos)
        return false;
    value = line.substr(at, close - at);
    return true;
}

// A bare value from `at` to the end of the line: a backslash takes the next
// character as it is.
void ReadBare(const std::string& line, std::size_t at, std::string& value)
{
    for (; at < line.size(); ++at) {
        if (line[at] == '\\' && at + 1 < line.size())
            ++at;
        value += line[at];
    }
}

// The value of a line "KEY=value" behind `at`, the start of the value. False
// for a quote left open.
bool ReadValue(const std::string& line, std::size_t at, std::string& value)
{
    value.clear();
    if (at < line.size() && line[at] == '"')
        return ReadDoubleQuoted(line, at + 1, value);
    if (at < line.size() && line[at] == '\'')
        return ReadSingleQuoted(line, at + 1, value);
    ReadBare(line, at, value);
    return true;
}

// The line without the blanks, tabs and carriage return around it.
std::string Trimmed(const std::string& line)
{
    const std::size_t first = line.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return std::string();
    return line.substr(first, line.find_last_not_of(" \t\r") - first + 1);
}

// The first bytes of a regular file, opened without waiting on a FIFO or a
// device; false when it isn't one or can't be read.
bool ReadRegularFile(const std::string& path, std::string& text)
{
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct stat status {};
    bool done = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    text.assign(kMostBytesRead, '\0');
    std::size_t used = 0;
    while (done && used < text.size()) {
        const ssize_t count = read(descriptor, &text[used], text.size() - used);
        if (count < 0)
            done = false;
        if (count <= 0)
            break;
        used += static_cast<std::size_t>(count);
    }
    close(descriptor);
    text.resize(used);
    return done;
}

}  // namespace

const std::vector<std::string>& OsReleasePaths()
{
    static const std::vector<std::string> paths = {"/etc/os-release", "/usr/lib/os-release"};
    return paths;
}

std::string PrettyNameOf(const std::string& osReleaseText)
{
    std::string prettyName = kDefaultPrettyName;
    std::size_t start = 0;
    while (start < osReleaseText.size()) {
        std::size_t end = osReleaseText.find('\n', start);
        if (end == std::string::npos)
            end = osReleaseText.size();
        const std::string line = Trimmed(osReleaseText.substr(start, end - start));
        start = end + 1;
        std::string value;
        if (line.compare(0, sizeof kPrettyNameKey - 1, kPrettyNameKey) == 0 &&
            ReadValue(line, sizeof kPrettyNameKey - 1, value))
            prettyName = value;
    }
    return prettyName;
}

std::string ReadPrettyName(const std::vector<std::string>& paths)
{
    for (const std::string& path : paths) {
        std::string text;
        if (ReadRegularFile(path, text))
            return PrettyNameOf(text);
    }
    return std::string();
}

}  // namespace posix
}  // namespace platform
