// One product of a copy: a subkey of the copy's key whose name begins with
// "ZOR ", described by its own CurrentVersion key.
#pragma once

#include <string>

#include "inventory/CZORVersion.h"

class CZORProduct {
public:
    CZORProduct(const std::string& owningCopyName, const std::string& keyName);

    // Reads the product's CurrentVersion values.
    void Collect();

    std::string name;
    std::string copyName;
    std::string description;
    std::string lastModifiedDate;
    std::string title;
    std::string productCode;
    CZORVersion version;
};
