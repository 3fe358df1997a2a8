#include "FuzzSupport.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/FileSystem.h"
#include "platform/Profile.h"

void Require(bool holds, const std::string& what)
{
    if (holds)
        return;
    std::fprintf(stderr, "property broken: %s\n", what.c_str());
    std::abort();
}

std::string AsCString(const std::string& text)
{
    return std::string(text.c_str());
}

std::string PickText(FuzzedDataProvider& data, const std::vector<std::string>& known,
                     std::size_t maxLength)
{
    if (!known.empty() && data.ConsumeBool())
        return AsCString(known[data.ConsumeIntegralInRange<std::size_t>(0, known.size() - 1)]);
    return AsCString(data.ConsumeRandomLengthString(maxLength));
}

namespace {

char FlippedCase(char c)
{
    if (c >= 'a' && c <= 'z')
        return static_cast<char>(c - 'a' + 'A');
    if (c >= 'A' && c <= 'Z')
        return static_cast<char>(c - 'A' + 'a');
    return c;
}

}  // namespace

std::string WithFuzzedCase(FuzzedDataProvider& data, const std::string& text)
{
    std::string result(text);
    for (char& c : result) {
        if (data.ConsumeBool())
            c = FlippedCase(c);
    }
    return result;
}

std::string AsciiFolded(const std::string& text)
{
    std::string folded(text);
    for (char& c : folded) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return folded;
}

void RemoveProfileFile(const std::string& path)
{
    std::error_code ignored;
    std::filesystem::remove(platform::SystemPath(path), ignored);
    char none[1];
    platform::GetProfileString("", "", "", none, sizeof none, path);
}
