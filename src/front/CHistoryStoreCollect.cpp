// The tool's run over the store: the summaries, then the archive of the whole
// history folder, and one console line on the outcome.
#include <iostream>

#include "history/CHistoryStore.h"
#include "history/HistoryPaths.h"
#include "platform/StoreLock.h"
#include "platform/StoreSecurity.h"
#include "zip/CZipper.h"

// The run holds the store's lock from the summaries to the end of the archive,
// so that no recorder call changes the store meanwhile: a History.ini that a
// recorder held open for its write at the moment the archive came to it would
// be left out of the archive. A recorder waits at most the lock's bound. A
// store that older code left writable by others is set right before anything
// is written into it.
bool CHistoryStore::CollectHistory(const std::string& zipFileName)
{
    platform::SecureExistingStore(GetHistoryFolder());
    const platform::StoreLock lock(GetHistoryFolder());
    // A failed or skipped summary never stops the archive.
    WriteSummary();
    return CreateZip(zipFileName);
}

bool CHistoryStore::CreateZip(const std::string& zipFileName)
{
    CZipper zipper(nullptr, nullptr, false);
    const std::string folder = GetHistoryFolder();
    if (!DirectoryExists(folder.c_str())) {
        std::cout << "There is no ZOR Installation History Log ( no ZOR V9 or Later is installed )"
                  << std::endl;
        return false;
    }
    // The history folder is the root of every entry name; an existing file is
    // replaced.
    bool created = false;
    if (zipper.Open(zipFileName.c_str(), folder.c_str(), false))
        created = zipper.AddFolder(folder.c_str(), false);
    // A failure that shows only when the archive's directory is written is not
    // looked at.
    zipper.Close();
    if (created) {
        std::cout << "The file '" << zipFileName << "' is created successfully" << std::endl;
        return true;
    }
    std::cout << " Failed to create file '" << zipFileName << "'" << std::endl;
    return false;
}
