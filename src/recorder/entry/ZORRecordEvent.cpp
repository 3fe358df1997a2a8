// The recorder's entry as a console program, for installers that run a command
// rather than call a function. It prints nothing of its own.
#include "history/CHistoryStore.h"

int main(int argc, char** argv)
{
    CHistoryStore store;
    return store.Record(argc, argv);
}
