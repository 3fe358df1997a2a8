// A holder that keeps the store's lock doesn't stop the recorder: this
// program takes the lock of the machine's store and keeps it while
// ZORRecordEvent, in the current folder, records an event; the recorder waits
// for the lock's bound and then records the event whole. Argument: the
// history folder.
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "platform/StoreLock.h"

namespace {

// The recorder waits for the held lock until its bound, a minute, has passed,
// and no longer: less would mean the lock was never waited for, much more
// that the wait had no bound. The slack is for Wine starting the program.
constexpr std::chrono::seconds kShortestWait(55);
constexpr std::chrono::seconds kLongestWait(150);

// Named anew at each run, so that no event of an earlier run in the same
// store can pass for this one.
std::string NewEventID()
{
    return "HeldStoreLock" + std::to_string(static_cast<long long>(std::time(nullptr)));
}

std::string ReadWhole(const std::string& path)
{
    std::ifstream file(path, std::ios_base::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cout << "FAIL: usage: HeldStoreLock <history folder>" << std::endl;
        return 1;
    }
    const std::string folder = argv[1];
    int failures = 0;
    const platform::StoreLock held(folder);
    if (!held.Held()) {
        std::cout << "FAIL: the holder has no lock" << std::endl;
        return 1;
    }
    const std::string eventID = NewEventID();
    const std::string command = "ZORRecordEvent.exe -start " + eventID;
    const auto began = std::chrono::steady_clock::now();
    const int code = std::system(command.c_str());
    const auto waited = std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - began);
    std::cout << "the recorder took " << waited.count() << " s" << std::endl;
    if (code != 0) {
        std::cout << "FAIL: the recorder returned " << code << std::endl;
        ++failures;
    }
    if (waited < kShortestWait || waited > kLongestWait) {
        std::cout << "FAIL: the recorder did not wait for the lock's bound" << std::endl;
        ++failures;
    }
    const std::string ini = ReadWhole(folder + "\\History.ini");
    for (const std::string& line : {"[" + eventID + "]", "Event_ID=" + eventID, std::string("Complete_Flag=FALSE")}) {
        if (ini.find(line) == std::string::npos) {
            std::cout << "FAIL: History.ini lacks " << line << std::endl;
            ++failures;
        }
    }
    if (!held.Held()) {
        std::cout << "FAIL: the holder lost the lock" << std::endl;
        ++failures;
    }
    std::cout << (failures == 0 ? "PASS" : "FAILED") << std::endl;
    return failures == 0 ? 0 : 1;
}
