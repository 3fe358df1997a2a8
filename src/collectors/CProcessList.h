// The running processes, by id and executable name: through the process-status
// library "psapi.dll" on the NT family, and through the snapshot calls of
// "kernel32.dll" on the Windows 95 family, both looked up at run time.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "collectors/Info.h"

struct ProcessEntry {
    std::string name;
    std::int32_t processId = 0;
};

class CProcessList : public Info {
public:
    CProcessList();
    virtual ~CProcessList();
    // 0, or 1 when the snapshot calls of "kernel32.dll" can't be used.
    virtual int Collect();
    virtual int Write();

    // Whether the report lists the entry, by its name and ProcessKeywords.
    bool IsSelected(const ProcessEntry& entry);

    std::vector<ProcessEntry> processes;

private:
    int CollectFromStatusLibrary(std::uint32_t ownId);
    int CollectFromSnapshot(std::uint32_t ownId);
};
