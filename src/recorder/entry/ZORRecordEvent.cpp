// The recorder's entry as a console program, for installers that run a command
// rather than call a function. It hands its argument list to the entry and
// exits with the entry's result; of its own it prints only its usage text, on
// the standard error, when it is asked for it or the options don't suffice.
#include <cstring>
#include <iostream>

#include "history/CHistoryStore.h"

namespace {

// What the entry returns when the options name no mode or an empty EventID.
constexpr int kOptionsDontSuffice = 2;

bool AsksForUsage(int argc, char** argv)
{
    if (argc < 2)
        return true;
    for (const char* help : {"-h", "-?", "--help", "/?"}) {
        if (std::strcmp(argv[1], help) == 0)
            return true;
    }
    return false;
}

void PrintUsage()
{
    std::cerr << "Records one installation event in the ZOR installation history:\n"
                 "  ZORRecordEvent -start <EventID> [-Product <text>] [-Version <text>]\n"
                 "      [-ServiceLevel <text>] [-Type GUI|Silent] [-Action <text>] [-Path <folder>]\n"
                 "      [-Command <text>] [-l <installer log>] [-t <trace file>] [-u <response file>]\n"
                 "  ZORRecordEvent -logmessage <EventID> -message <text>\n"
                 "  ZORRecordEvent -end <EventID> [-CopyName <copy>] [-Result <text>] [-l <installer log>]\n"
                 "Every option takes a value; the same EventID in all three calls.\n"
                 "Exit code: 0 carried out, 1 the history store could not be set up,\n"
                 "2 this text (no -start, -end or -logmessage, or an empty EventID).\n";
}

}  // namespace

int main(int argc, char** argv)
{
    if (AsksForUsage(argc, argv)) {
        PrintUsage();
        return kOptionsDontSuffice;
    }
    CHistoryStore store;
    const int result = store.Record(argc, argv);
    if (result == kOptionsDontSuffice)
        PrintUsage();
    return result;
}
