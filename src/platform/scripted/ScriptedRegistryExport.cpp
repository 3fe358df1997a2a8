// Reads a registry export into the scripted registry, so that one fixture
// file serves both the scripted machine and a real registry (imported there
// with regedit).
#include <cstdint>
#include <string>
#include <vector>

#include "platform/Registry.h"
#include "platform/scripted/ScriptedRegistry.h"

namespace platform {
namespace scripted {

namespace {

const char kMachineRoot[] = "HKEY_LOCAL_MACHINE\\";

// The export's lines, with continued lines joined and line ends taken off.
std::vector<std::string> LogicalLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::string current;
    std::string::size_type start = 0;
    while (start < text.size()) {
        std::string::size_type end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        std::string line = text.substr(start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!current.empty()) {
            const std::string::size_type first = line.find_first_not_of(" \t");
            line = first == std::string::npos ? std::string() : line.substr(first);
        }
        if (!line.empty() && line.back() == '\\' && line.find('=') != std::string::npos) {
            current += line.substr(0, line.size() - 1);
            continue;
        }
        lines.push_back(current + line);
        current.clear();
    }
    if (!current.empty())
        lines.push_back(current);
    return lines;
}

// A quoted text from `at` (on its opening quote), with \\ and \" undone; `at`
// ends behind the closing quote. False when the text isn't closed.
bool ReadQuoted(const std::string& line, std::string::size_type& at, std::string& text)
{
    text.clear();
    for (++at; at < line.size(); ++at) {
        if (line[at] == '\\' && at + 1 < line.size()) {
            text += line[++at];
        } else if (line[at] == '"') {
            ++at;
            return true;
        } else {
            text += line[at];
        }
    }
    return false;
}

bool ReadHexBytes(const std::string& list, std::string& bytes)
{
    bytes.clear();
    std::string::size_type at = 0;
    while (at < list.size()) {
        const std::string::size_type comma = list.find(',', at);
        const std::string item =
            list.substr(at, comma == std::string::npos ? std::string::npos : comma - at);
        if (item.size() != 2 || item.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
            return false;
        bytes.push_back(static_cast<char>(std::stoi(item, nullptr, 16)));
        if (comma == std::string::npos)
            break;
        at = comma + 1;
    }
    return true;
}

// The data behind "=": its type and bytes.
bool ReadData(const std::string& data, std::uint32_t& type, std::string& bytes)
{
    if (!data.empty() && data[0] == '"') {
        std::string::size_type at = 0;
        std::string text;
        if (!ReadQuoted(data, at, text))
            return false;
        type = kRegSz;
        bytes = text + std::string(1, '\0');
        return true;
    }
    if (data.compare(0, 6, "dword:") == 0) {
        // One to eight hexadecimal digits, as regedit takes them: "dword:1"
        // is the number 1, as "dword:00000001" is.
        const std::string digits = data.substr(6);
        if (digits.empty() || digits.size() > 8 ||
            digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
            return false;
        const std::uint32_t number = static_cast<std::uint32_t>(std::stoul(digits, nullptr, 16));
        type = kRegDword;
        bytes.clear();
        for (int i = 0; i < 4; ++i)
            bytes.push_back(static_cast<char>((number >> (8 * i)) & 0xFF));
        return true;
    }
    if (data.compare(0, 4, "hex:") == 0) {
        type = kRegBinary;
        return ReadHexBytes(data.substr(4), bytes);
    }
    if (data.compare(0, 4, "hex(") == 0) {
        const std::string::size_type close = data.find("):");
        if (close == std::string::npos)
            return false;
        type = static_cast<std::uint32_t>(std::stoul(data.substr(4, close - 4), nullptr, 16));
        return ReadHexBytes(data.substr(close + 2), bytes);
    }
    return false;
}

bool ReadValueLine(Registry& registry, const std::string& key, const std::string& line)
{
    std::string name;
    std::string::size_type at = 0;
    if (line[0] == '@') {
        at = 1;
    } else if (!ReadQuoted(line, at, name)) {
        return false;
    }
    if (at >= line.size() || line[at] != '=')
        return false;
    std::uint32_t type = kRegNone;
    std::string bytes;
    if (!ReadData(line.substr(at + 1), type, bytes))
        return false;
    registry.SetValue(key, name, type, bytes);
    return true;
}

}  // namespace

bool Registry::LoadExport(const std::string& text)
{
    const std::vector<std::string> lines = LogicalLines(text);
    std::string key;
    bool inMachineKey = false;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string& line = lines[i];
        if (i == 0 && (line == "REGEDIT4" || line == "Windows Registry Editor Version 5.00"))
            continue;
        if (line.empty() || line[0] == ';')
            continue;
        if (line[0] == '[') {
            if (line.back() != ']')
                return false;
            const std::string path = line.substr(1, line.size() - 2);
            inMachineKey = path.compare(0, sizeof kMachineRoot - 1, kMachineRoot) == 0;
            key = inMachineKey ? path.substr(sizeof kMachineRoot - 1) : std::string();
            if (inMachineKey)
                AddKey(key);
            continue;
        }
        if (!inMachineKey || !ReadValueLine(*this, key, line))
            return false;
    }
    return true;
}

}  // namespace scripted
}  // namespace platform
