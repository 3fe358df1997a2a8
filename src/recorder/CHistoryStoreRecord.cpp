// The recorder's entry: one call of an installer, complete in itself.
#include <iostream>

#include "history/CHistoryStore.h"
#include "history/HistoryPaths.h"
#include "platform/StoreLock.h"
#include "platform/StoreSecurity.h"
#include "recorder/CInstallEvent.h"
#include "recorder/EventTexts.h"

// Set-up runs for every call, valid or not. Only a valid -start counts.
//
// The whole call, set-up included, holds the store's lock, so that calls of
// several installers at once, and a collection run, follow one another. The
// lock may live on the history folder itself, so the folders are made
// quietly before it is taken; set-up then finds them, or fails and tells as
// it always has. A store that older code left writable by others is set
// right before anything is written into it. Count is read again under the
// lock, since another call may have counted an event since this object read
// it.
int CHistoryStore::Record(int& argc, char** argv)
{
    MakeFolders(false);
    platform::SecureExistingStore(GetHistoryFolder());
    const platform::StoreLock lock(GetHistoryFolder());
    if (!Initialize()) {
        std::cout << "Initialiation Failed:" << std::endl;
        return 1;
    }
    CInstallEvent event(argc, argv);
    if (!event.Valid)
        return 2;
    if (event.Mode == texts::kStartMode) {
        Count = ReadCount() + 1;
        WriteCount(Count);
    }
    event.Dispatch();
    return 0;
}
