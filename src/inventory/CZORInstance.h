// One instance of a copy: a subkey of the copy's PROFILES key, whose values
// are the instance's profile parameters.
#pragma once

#include <string>
#include <vector>

#include "inventory/CParameter.h"

class CZORInstance {
public:
    CZORInstance(const std::string& owningCopyName, const std::string& instanceName);

    void CollectParameters();

    std::string copyName;
    std::string name;
    std::vector<CParameter> parameters;
};
