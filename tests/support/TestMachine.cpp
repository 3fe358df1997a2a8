#include "support/TestMachine.h"

#include <atomic>
#include <chrono>
#include <filesystem>
#include <system_error>

#include "platform/FileSystem.h"

namespace fs = std::filesystem;

namespace {

std::string UniqueTemporaryFolder()
{
    static std::atomic<unsigned> counter{0};
    const auto ticks = std::chrono::steady_clock::now().time_since_epoch().count();
    fs::path folder = fs::temp_directory_path() /
                      ("zor-test-" + std::to_string(ticks) + "-" + std::to_string(counter++));
    fs::create_directories(folder);
    std::string text = folder.string();
    while (text.size() > 1 && (text.back() == '/' || text.back() == '\\'))
        text.pop_back();
    return text;
}

}  // namespace

TestMachine::TestMachine() : root_(UniqueTemporaryFolder())
{
    platform::scripted::ResetMachine();
    fs::create_directories(platform::SystemPath(AppData()));
    Machine().commonAppData = AppData();
}

TestMachine::~TestMachine()
{
    platform::scripted::ResetMachine();
    std::error_code ignored;
    fs::remove_all(platform::SystemPath(root_), ignored);
}

std::string TestMachine::AppData() const
{
    return root_ + "\\AppData";
}

std::string TestMachine::HistoryFolder() const
{
    return AppData() + "\\TAQ\\ZORHistory";
}

std::string TestMachine::MakeHistoryFolder() const
{
    fs::create_directories(platform::SystemPath(HistoryFolder()));
    return HistoryFolder();
}

platform::scripted::Machine& TestMachine::Machine()
{
    return platform::scripted::CurrentMachine();
}
