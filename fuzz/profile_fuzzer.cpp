// The profile engine over any History.ini and any sequence of calls. Whatever
// the file held before, every read after a write returns what was written, as
// long as the section, the key and the value can stand in the file's lines
// as they are (see IsPlain*). A write of anything else may rearrange the lines
// behind it, so it ends what the target expects until the next plain write.
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "FuzzSupport.h"
#include "history/CIniFile.h"
#include "platform/FileSystem.h"
#include "platform/Profile.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace {

// The largest number of calls made on one file.
constexpr int kMostCalls = 16;
// The size of the section-name buffer of History.ini's reader.
constexpr std::size_t kSectionNamesBufferSize = 0x2800;

const std::vector<std::string> kSections = {"History", "history", "E1", "e1", "[E1]", "E1]", "",
                                            "Copy1", "E 1"};
const std::vector<std::string> kKeys = {"Count", "Event_ID", "Copy_Name", "copy_name",
                                        "Log_File_Name", "Result", "", "[x", "a=b"};
const std::vector<std::string> kValues = {"", "0", "12", "TRUE", "(Unknown)", "\"quoted\"",
                                          "'x'", " lead", "trail ", "C:\\Temp\\setup.log"};

TestMachine& Machine()
{
    static TestMachine machine;
    return machine;
}

// The blanks that a read trims off the ends of names and values.
bool IsBlank(char c)
{
    return (c >= 0x09 && c <= 0x0d) || c == 0x1a || c == ' ';
}

// One line holds the text, and a read gets it back without a blank lost.
bool StandsInALine(const std::string& text)
{
    if (text.find_first_of("\r\n") != std::string::npos)
        return false;
    return text.empty() || (!IsBlank(text.front()) && !IsBlank(text.back()));
}

bool IsPlainSection(const std::string& section)
{
    return !section.empty() && StandsInALine(section);
}

// "=" would end the key early, and a line that begins with "[" may read as a header.
bool IsPlainKey(const std::string& key)
{
    return !key.empty() && StandsInALine(key) && key.find('=') == std::string::npos &&
           key.front() != '[';
}

// A value between two equal quotes is handed out without them.
bool IsPlainValue(const std::string& value)
{
    const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
                        value.back() == value.front();
    return StandsInALine(value) && !quoted;
}

struct Written {
    std::string section;
    std::string key;
    std::string value;
};

// What the plain writes so far left, by section and key as the calls compare them.
using Expected = std::map<std::pair<std::string, std::string>, Written>;

class ProfileRun {
public:
    explicit ProfileRun(const std::string& path) : path_(path), ini_(path) {}

    void Write(FuzzedDataProvider& data)
    {
        const std::string section = PickText(data, kSections, 24);
        const std::string key = PickText(data, kKeys, 24);
        const std::string value = PickText(data, kValues, 300);
        const bool written =
            platform::WriteProfileString(section.c_str(), key.c_str(), value.c_str(), path_);
        Require(written, "a write to a writable file in an existing folder succeeds");
        if (!IsPlainSection(section) || !IsPlainKey(key) || !IsPlainValue(value)) {
            expected_.clear();
            return;
        }
        expected_[{AsciiFolded(section), AsciiFolded(key)}] = Written{section, key, value};
    }

    // A read in a buffer of any size gets the written value, cut to fit.
    void ReadOne(FuzzedDataProvider& data)
    {
        const std::uint32_t size = data.ConsumeIntegralInRange<std::uint32_t>(1, 300);
        const std::string section = PickText(data, kSections, 24);
        const std::string key = PickText(data, kKeys, 24);
        std::vector<char> buffer(size);
        const std::uint32_t length =
            platform::GetProfileString(section.c_str(), key.c_str(), "", buffer.data(), size, path_);
        Require(length < size && buffer[length] == '\0', "a read ends inside its buffer");
        const auto found = expected_.find({AsciiFolded(section), AsciiFolded(key)});
        if (found != expected_.end())
            Require(std::string(buffer.data()) == found->second.value.substr(0, size - 1),
                    "a read in a small buffer gets the written value cut");
    }

    void ReadNumber(FuzzedDataProvider& data)
    {
        const std::string section = PickText(data, kSections, 24);
        const std::string key = PickText(data, kKeys, 24);
        int fallback = data.ConsumeIntegral<int>();
        const int number = ini_.GetInt(section, key, fallback);
        const auto found = expected_.find({AsciiFolded(section), AsciiFolded(key)});
        if (found == expected_.end())
            return;
        const std::string& value = found->second.value;
        if (!value.empty() && value.size() <= 9 &&
            value.find_first_not_of("0123456789") == std::string::npos)
            Require(number == std::stoi(value), "a written number reads back as that number");
    }

    // Every section written stands in the list, as long as the list isn't cut.
    void ListSections()
    {
        const std::vector<std::string> names = ini_.GetSectionNames();
        std::size_t listed = 0;
        std::vector<std::string> folded;
        for (const std::string& name : names) {
            listed += name.size() + 1;
            folded.push_back(AsciiFolded(name));
        }
        if (listed + 2 * platform::kMaxPath >= kSectionNamesBufferSize)
            return;
        for (const auto& entry : expected_) {
            bool present = false;
            for (const std::string& name : folded)
                present = present || name == entry.first.first;
            Require(present, "a written section is listed: " + entry.second.section);
        }
    }

    // Every plain write so far reads back whole, as History.ini's accessors read.
    void CheckAll()
    {
        for (const auto& entry : expected_) {
            const Written& written = entry.second;
            Require(ini_.GetString(written.section, written.key, "", 256) ==
                        written.value.substr(0, 255),
                    "a read after a write gets the value: [" + written.section + "] " +
                        written.key + "=" + written.value);
        }
    }

private:
    std::string path_;
    CIniFile ini_;
    Expected expected_;
};

std::string NextFilePath()
{
    static unsigned counter = 0;
    return Machine().AppData() + "\\profile-" + std::to_string(counter++) + ".ini";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    // Each input gets a file of its own name, so that no earlier file's
    // identity can stand for it.
    const std::string path = NextFilePath();
    if (data.ConsumeBool())
        WriteWholeFile(path, data.ConsumeRandomLengthString(4096));
    ProfileRun run(path);
    for (int call = 0; call < kMostCalls && data.remaining_bytes() > 0; ++call) {
        switch (data.ConsumeIntegralInRange(0, 3)) {
        case 0:
            run.Write(data);
            run.CheckAll();
            break;
        case 1:
            run.ReadOne(data);
            break;
        case 2:
            run.ReadNumber(data);
            break;
        default:
            run.ListSections();
            break;
        }
    }
    RemoveProfileFile(path);
    return 0;
}
