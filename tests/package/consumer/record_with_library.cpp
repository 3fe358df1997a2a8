// Records an event through the installed library: its arguments go to the
// recorder as the console program's would, and its result is the exit code.
#include <zor/history/CHistoryStore.h>

int main(int argc, char** argv) {
    CHistoryStore store;
    return store.Record(argc, argv);
}
