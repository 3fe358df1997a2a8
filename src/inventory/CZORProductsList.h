// The product's own copies, with their products, instances and profiles, as
// the registry holds them under the current layout. The snapshot drives one
// list twice: under the layout before V9 (PART A) and under V9 (PART B).
#pragma once

#include <vector>

#include "collectors/Info.h"
#include "inventory/CZORCopy.h"

class CZORProductsList : public Info {
public:
    CZORProductsList();
    virtual ~CZORProductsList();
    // Appends the copies of the current layout; the list is not emptied first.
    virtual int Collect();
    // The report of the current layout.
    virtual int Write();
    void Clear();

    std::vector<CZORCopy> copies;
};
