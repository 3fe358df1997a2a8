// One TLR instance of a copy: a subkey of the copy's TLR_PROFILES key, whose values
// are its parameters; it is collected and never printed.
#pragma once

#include <string>
#include <vector>

#include "inventory/CParameter.h"

class CTLRInstance {
public:
    CTLRInstance(const std::string& owningCopyName, const std::string& instanceName);

    void CollectParameters();

    std::string copyName;
    std::string name;
    std::vector<CParameter> parameters;
};
