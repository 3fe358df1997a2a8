// How the product's keys are told apart by their names, and the paths and
// values that its collection reads.
#pragma once

#include <string>
#include <vector>

#include "inventory/CParameter.h"
#include "inventory/CZORVersion.h"

// Under the layout before V9 only the maker's subkey named exactly "ZOR" is a
// copy; under every other layout each subkey of the root is one.
bool IsCopyKeyName(const std::string& name);

// A product's key begins with "ZOR " (the blank included, case counting).
bool IsProductKeyName(const std::string& name);

// One parameter for each value of `key`, in the registry's order, none left
// out.
std::vector<CParameter> ReadParameters(const std::string& key);

// The values Version, Release, Modification and "Service Level" of a
// CurrentVersion key, read in that order.
CZORVersion ReadVersion(const std::string& currentVersionKey);
