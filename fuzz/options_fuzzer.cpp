// The recorder's option scan over any argument list. Every list is a run of
// tokens: an option with the element behind it as its value, an element that
// names no option, and at most one option in the last place, whose value is
// the null pointer behind the list. The target builds the list from such
// tokens, so it knows what each member must hold afterwards, and the list
// lies in memory of exactly its own size, so that no read past its end goes
// unseen.
#include <cstdint>
#include <string>
#include <vector>

#include "FuzzSupport.h"
#include "recorder/CInstallEvent.h"
#include "recorder/RecorderOptions.h"

namespace {

// The largest number of tokens in one list.
constexpr int kMostTokens = 64;

const std::vector<std::string> kValues = {"", "E1", "-start", "-END", "-l", "C:\\Temp\\setup.log"};

const RecorderOption* OptionNamed(const std::string& element)
{
    for (const RecorderOption& option : kRecorderOptions) {
        if (AsciiFolded(element) == AsciiFolded(option.name))
            return &option;
    }
    return nullptr;
}

// A recorder option, spelled in any case.
const RecorderOption& PickOption(FuzzedDataProvider& data, std::string& spelling)
{
    const RecorderOption& option =
        kRecorderOptions[data.ConsumeIntegralInRange<std::size_t>(0, kRecorderOptions.size() - 1)];
    spelling = WithFuzzedCase(data, option.name);
    return option;
}

// The elements, and an event that holds what the scan must leave in its members.
struct ArgumentList {
    std::vector<std::string> elements;
    CInstallEvent expected{std::string()};

    void AddOption(const RecorderOption& option, const std::string& spelling, const std::string& value)
    {
        elements.push_back(spelling);
        expected.*(option.value) = value;
        if (option.mode != nullptr)
            expected.Mode = option.mode;
    }
};

// Element 0 is the caller's name, whatever it says; then the tokens.
ArgumentList BuildList(FuzzedDataProvider& data)
{
    ArgumentList list;
    list.elements.push_back(PickText(data, {"setup", "-start"}, 16));
    for (int token = 0; token < kMostTokens && data.remaining_bytes() > 0; ++token) {
        const int kind = data.ConsumeIntegralInRange(0, 2);
        std::string spelling;
        if (kind == 0) {
            const RecorderOption& option = PickOption(data, spelling);
            const std::string value = PickText(data, kValues, 40);
            list.AddOption(option, spelling, value);
            list.elements.push_back(value);
        } else if (kind == 1) {
            const std::string element = PickText(data, {"-foo", "-", "-startx", "-L "}, 16);
            if (OptionNamed(element) == nullptr)
                list.elements.push_back(element);
        } else {
            const RecorderOption& option = PickOption(data, spelling);
            list.AddOption(option, spelling, "");
            break;
        }
    }
    return list;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    ArgumentList list = BuildList(data);
    std::vector<char*> argv;
    argv.reserve(list.elements.size() + 1);
    for (std::string& element : list.elements)
        argv.push_back(&element[0]);
    argv.push_back(nullptr);

    CInstallEvent event{std::string()};
    const int argc = static_cast<int>(list.elements.size());
    ReadRecorderOptions(argc, argv.data(), event);

    Require(event.Mode == list.expected.Mode, "the last mode option sets the mode");
    for (const RecorderOption& option : kRecorderOptions)
        Require(event.*(option.value) == list.expected.*(option.value),
                std::string("the last value of the option wins: ") + option.name);
    return 0;
}
