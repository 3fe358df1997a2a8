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

// The number of a product's Language text: decimal, as the runtime's
// conversion reads it, then its 32 bits as unsigned ("-1" is 4294967295).
std::uint32_t LanguageNumber(const std::string& text);

class CProductsList : public Info {
public:
    CProductsList();
    virtual ~CProductsList();
    virtual int Collect();
    virtual int Write();

    bool IsSelected(const ProductEntry& entry);

    std::vector<ProductEntry> products;
};
