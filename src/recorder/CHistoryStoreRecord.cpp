// The recorder's entry: one call of an installer, complete in itself.
#include <iostream>

#include "history/CHistoryStore.h"
#include "recorder/CInstallEvent.h"
#include "recorder/EventTexts.h"

// Set-up runs for every call, valid or not. Only a valid -start counts.
int CHistoryStore::Record(int& argc, char** argv)
{
    if (!Initialize()) {
        std::cout << "Initialiation Failed:" << std::endl;
        return 1;
    }
    CInstallEvent event(argc, argv);
    if (!event.Valid)
        return 2;
    if (event.Mode == texts::kStartMode) {
        Count += 1;
        WriteCount(Count);
    }
    event.Dispatch();
    return 0;
}
