// The running processes, by id and executable name.
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
    virtual int Collect();
    virtual int Write();

    bool IsSelected(const ProcessEntry& entry);

    std::vector<ProcessEntry> processes;
};
