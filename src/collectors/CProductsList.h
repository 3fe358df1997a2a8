// The software installed for the whole machine through the Windows Installer,
// reported when its publisher matches one of the product keywords.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "collectors/Info.h"

struct ProductEntry {
    std::string displayName;
    std::string displayVersion;
    std::string installDate;
    std::string installLocation;
    std::string publisher;
    std::uint32_t language = 0;
};

class CProductsList : public Info {
public:
    CProductsList();
    virtual ~CProductsList();
    virtual int Collect();
    virtual int Write();

    bool IsSelected(const ProductEntry& entry);

    std::vector<ProductEntry> products;
};
