// One profile call from the command line, for the fault tests, which stop it
// at each of its steps and then read what the file stands for.
//   profile_tool write <file> <section> <key> <value>
//   profile_tool read <file> <key>...
// "read" prints every section as "[name]" and, below it, "key=value" for each
// key asked for, or "key" alone where the section doesn't hold it.
#include <iostream>
#include <string>
#include <vector>

#include "platform/Profile.h"

namespace {

constexpr std::uint32_t kNamesSize = 1 << 20;
constexpr std::uint32_t kValueSize = 1 << 16;
const char* const kMissing = "\x01";

std::vector<std::string> SectionNames(const std::string& path)
{
    std::vector<char> buffer(kNamesSize, '\0');
    platform::GetProfileSectionNames(buffer.data(), kNamesSize, path);
    std::vector<std::string> names;
    for (const char* name = buffer.data(); *name != '\0'; name += names.back().size() + 1)
        names.emplace_back(name);
    return names;
}

void PrintSections(const std::string& path, const std::vector<std::string>& keys)
{
    std::vector<char> value(kValueSize, '\0');
    for (const std::string& section : SectionNames(path)) {
        std::cout << "[" << section << "]\n";
        for (const std::string& key : keys) {
            platform::GetProfileString(section.c_str(), key.c_str(), kMissing, value.data(),
                                       kValueSize, path);
            const std::string text = value.data();
            std::cout << key << (text == kMissing ? "" : "=" + text) << "\n";
        }
    }
}

}  // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() == 5 && arguments[0] == "write")
        return platform::WriteProfileString(arguments[2].c_str(), arguments[3].c_str(),
                                            arguments[4].c_str(), arguments[1])
                   ? 0
                   : 1;
    if (arguments.size() >= 2 && arguments[0] == "read") {
        PrintSections(arguments[1], std::vector<std::string>(arguments.begin() + 2, arguments.end()));
        return 0;
    }
    std::cerr << "usage: profile_tool write <file> <section> <key> <value> | read <file> <key>...\n";
    return 2;
}
