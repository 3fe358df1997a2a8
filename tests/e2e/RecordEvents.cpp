// Records many events in this one process through the recorder's library, as
// an installer that calls the entry again and again does: for each n from 1 to
// the count given, "-start Many-<n>", then "-end Many-<n>". Its exit code is
// the number of calls that didn't give 0, at most 1.
#include <cstdlib>
#include <string>
#include <vector>

#include "history/CHistoryStore.h"

namespace {

int RecordOnce(const std::string& mode, const std::string& eventId)
{
    std::vector<std::string> arguments = {"record_events", mode, eventId};
    std::vector<char*> argv;
    for (std::string& argument : arguments)
        argv.push_back(&argument[0]);
    argv.push_back(nullptr);
    int argc = static_cast<int>(arguments.size());
    CHistoryStore store;
    return store.Record(argc, argv.data());
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
        return 2;
    const int count = std::atoi(argv[1]);
    int failed = 0;
    for (int n = 1; n <= count; ++n) {
        const std::string eventId = "Many-" + std::to_string(n);
        if (RecordOnce("-start", eventId) != 0 || RecordOnce("-end", eventId) != 0)
            failed = 1;
    }
    return failed;
}
