#include "history/CHistoryStore.h"

#include <string>

#include "history/CIniFile.h"
#include "history/ConsoleMessages.h"
#include "history/HistoryKeys.h"
#include "history/HistoryPaths.h"
#include "platform/StoreSecurity.h"

namespace {

// One level of the store's tree: true if the folder is there or could be made,
// with the store's own security. A folder that another call makes at the same
// moment is there as well.
bool EnsureFolder(const std::string& path)
{
    return DirectoryExists(path.c_str()) || platform::CreateStoreFolder(path) ||
           DirectoryExists(path.c_str());
}

}  // namespace

CHistoryStore::CHistoryStore() : Count(0)
{
    Count = ReadCount();
}

int CHistoryStore::ReadCount()
{
    CIniFile ini(GetHistoryIniPath());
    int missingCount = 0;
    return ini.GetInt(kHistorySection, kCountKey, missingCount);
}

CHistoryStore::~CHistoryStore()
{
}

void CHistoryStore::WriteCount(int count)
{
    CIniFile ini(GetHistoryIniPath());
    ini.WriteString(kHistorySection, kCountKey, std::to_string(count));
}

// Lays down History.ini with a count of 0 if it is missing, once both folders
// stand. A store that stands complete is left exactly as it is.
bool CHistoryStore::Initialize()
{
    if (!MakeFolders(true))
        return false;
    if (!FileExists(GetHistoryIniPath().c_str()))
        WriteCount(0);
    return true;
}

// Makes the maker's folder and the history folder below the machine's
// application data folder, which must exist already. The first folder fails in
// silence; the second, when asked, tells the user which path it could not
// make, without a line end, so that the recorder's own message follows on the
// same line.
bool CHistoryStore::MakeFolders(bool tellFailure)
{
    const std::string base = GetCommonAppDataFolder();
    if (!EnsureFolder(base + "\\TAQ"))
        return false;
    const std::string historyFolder = base + "\\TAQ\\" + "ZORHistory";
    if (EnsureFolder(historyFolder))
        return true;
    if (tellFailure)
        PrintFailedToCreatePath(historyFolder);
    return false;
}
