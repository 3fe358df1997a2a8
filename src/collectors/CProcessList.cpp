#include "collectors/CProcessList.h"

#include <cstring>
#include <iomanip>
#include <ostream>

#include "collectors/KeywordFilter.h"
#include "collectors/ReportTexts.h"
#include "history/HistoryPaths.h"
#include "platform/Processes.h"
#include "recorder/CLogger.h"

namespace {

using platform::kPathBufferSize;

// OpenProcess access: PROCESS_QUERY_INFORMATION and PROCESS_VM_READ.
constexpr std::uint32_t kQueryAndReadAccess = 0x410;
// CreateToolhelp32Snapshot flags: TH32CS_SNAPPROCESS.
constexpr std::uint32_t kSnapProcesses = 2;

// The Windows folder in long and short form, each ending in a backslash, and
// what a path below it would be rewritten to. Names are reported without a
// path, so nothing is ever rewritten with it.
struct SystemRootRewrite {
    std::string longFolder;
    std::string shortFolder;
    std::string replacement;
};

void EndWithBackslash(std::string& folder)
{
    if (!folder.empty() && folder.back() != '\\')
        folder += "\\";
}

SystemRootRewrite PrepareSystemRootRewrite()
{
    SystemRootRewrite rewrite;
    platform::GetWindowsFolder(rewrite.longFolder);
    platform::GetShortPathForm(rewrite.longFolder, rewrite.shortFolder);
    EndWithBackslash(rewrite.longFolder);
    EndWithBackslash(rewrite.shortFolder);
    rewrite.replacement = "\\SystemRoot\\";
    return rewrite;
}

// The text of a name buffer up to its first zero byte, never beyond its end.
std::string BufferText(const char (&buffer)[kPathBufferSize])
{
    std::size_t length = 0;
    while (length < kPathBufferSize && buffer[length] != '\0')
        ++length;
    return std::string(buffer, length);
}

// Puts `text` into the buffer with its terminating zero, cut to fit.
void CopyIntoBuffer(char (&buffer)[kPathBufferSize], const std::string& text)
{
    const std::size_t length = text.size() < kPathBufferSize ? text.size() : kPathBufferSize - 1;
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
}

// Looks up every name in `library`; true only when all are found.
template <std::size_t Count>
bool FindAllFunctions(std::uintptr_t library, const char* const (&names)[Count],
                      std::uintptr_t (&functions)[Count])
{
    for (std::size_t i = 0; i < Count; ++i) {
        functions[i] = platform::FindLibraryFunction(library, names[i]);
        if (functions[i] == 0)
            return false;
    }
    return true;
}

}  // namespace

CProcessList::CProcessList() {}

CProcessList::~CProcessList() {}

int CProcessList::Collect()
{
    processes.clear();
    const SystemRootRewrite rewrite = PrepareSystemRootRewrite();
    static_cast<void>(rewrite);
    const std::uint32_t ownId = platform::OwnProcessId();
    if (IsWindowsNT())
        return CollectFromStatusLibrary(ownId);
    return CollectFromSnapshot(ownId);
}

// The NT family. "GetModuleFileNameExA" must be there too, though it is never
// called. The handle opened on the program's own process is not closed.
int CProcessList::CollectFromStatusLibrary(std::uint32_t ownId)
{
    const std::uintptr_t library = platform::LoadLibraryNamed("psapi.dll");
    if (library == 0)
        return 0;
    enum { kEnumProcesses, kEnumProcessModules, kGetModuleBaseName, kGetModuleFileNameEx };
    const char* const names[] = {"EnumProcesses", "EnumProcessModules", "GetModuleBaseNameA",
                                 "GetModuleFileNameExA"};
    std::uintptr_t functions[4] = {};
    if (!FindAllFunctions(library, names, functions)) {
        platform::FreeLibraryHandle(library);
        return 0;
    }

    std::uint32_t ids[platform::kProcessIdBufferCount] = {};
    std::uint32_t bytesUsed = 0;
    const bool listed = platform::CallEnumProcesses(functions[kEnumProcesses], ids, bytesUsed);
    std::uint32_t count = bytesUsed / 4;
    if (count > platform::kProcessIdBufferCount)
        count = platform::kProcessIdBufferCount;
    if (!listed || count == 0) {
        platform::FreeLibraryHandle(library);
        return 0;
    }

    char name[kPathBufferSize] = {};
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t id = ids[i];
        const std::uintptr_t process =
            platform::OpenProcessHandle(kQueryAndReadAccess, false, id);
        if (id == ownId || process == 0 || id == 0)
            continue;
        std::uintptr_t firstModule = 0;
        if (!platform::CallEnumProcessModules(functions[kEnumProcessModules], process,
                                              firstModule)) {
            platform::CloseSystemHandle(process);
            continue;
        }
        CopyIntoBuffer(name, "UNK_NAME");
        platform::CallGetModuleBaseName(functions[kGetModuleBaseName], process, firstModule, name);
        processes.push_back(ProcessEntry{BufferText(name), static_cast<std::int32_t>(id)});
        platform::CloseSystemHandle(process);
    }
    platform::FreeLibraryHandle(library);
    return 0;
}

// The Windows 95 family. "Module32First" and "Module32Next" must be there too,
// though they are never called. On the early returns the library stays loaded.
// The name buffer keeps the last name cut out of a path: an entry whose
// executable has no backslash above its first character gets the name of the
// entry before it, and the first such entry the empty name.
int CProcessList::CollectFromSnapshot(std::uint32_t ownId)
{
    const std::uintptr_t library = platform::LoadLibraryNamed("kernel32.dll");
    if (library == 0)
        return 1;
    enum { kCreateSnapshot, kProcess32First, kProcess32Next, kModule32First, kModule32Next };
    const char* const names[] = {"CreateToolhelp32Snapshot", "Process32First", "Process32Next",
                                 "Module32First", "Module32Next"};
    std::uintptr_t functions[5] = {};
    if (!FindAllFunctions(library, names, functions))
        return 1;

    const std::uintptr_t snapshot =
        platform::CallCreateToolhelp32Snapshot(functions[kCreateSnapshot], kSnapProcesses, 0);
    if (snapshot == platform::kInvalidHandle)
        return 1;

    const std::uint32_t entrySize = platform::ProcessEntrySize();
    char name[kPathBufferSize] = {};
    platform::ProcessSnapshotEntry entry;
    entry.size = entrySize;
    bool more = platform::CallProcess32First(functions[kProcess32First], snapshot, entry);
    for (; more; more = platform::CallProcess32Next(functions[kProcess32Next], snapshot, entry)) {
        if (entry.processId == ownId || entry.size != entrySize)
            continue;
        const std::string::size_type backslash = entry.exeFile.rfind('\\');
        if (backslash != std::string::npos && backslash > 0)
            CopyIntoBuffer(name, entry.exeFile.substr(backslash + 1));
        processes.push_back(
            ProcessEntry{BufferText(name), static_cast<std::int32_t>(entry.processId)});
    }
    platform::CloseSystemHandle(snapshot);
    platform::FreeLibraryHandle(library);
    return 0;
}

bool CProcessList::IsSelected(const ProcessEntry& entry)
{
    return MatchesKeywords(entry.name, ProcessKeywords, 3, AllSwitch::WholeWord);
}

// The id column has a width and no alignment of its own: it follows whatever
// alignment earlier reports left on the stream.
int CProcessList::Write()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << texts::processes::kCountLabel << processes.size() << std::endl;
    log << texts::processes::kRule << std::endl;
    log << texts::processes::kHeader << std::endl;
    log << texts::processes::kRule << std::endl;
    for (const ProcessEntry& entry : processes) {
        if (IsSelected(entry))
            log << std::setw(texts::processes::kIdWidth) << entry.processId << entry.name << std::endl;
    }
    log << texts::processes::kEnd << std::endl;
    return 0;
}
