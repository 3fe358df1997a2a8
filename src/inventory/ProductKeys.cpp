#include "inventory/ProductKeys.h"

#include "inventory/InventoryTexts.h"

#include "inventory/RegistryReader.h"

bool IsCopyKeyName(const std::string& name)
{
    if (GetRegistryLayout() == LAYOUT_PRE_V9)
        return name == "ZOR";
    return true;
}

bool IsProductKeyName(const std::string& name)
{
    return name.compare(0, sizeof texts::products::kProductKeyPrefix - 1, texts::products::kProductKeyPrefix) == 0;
}

std::vector<CParameter> ReadParameters(const std::string& key)
{
    std::vector<CParameter> parameters;
    for (const std::string& name : EnumRegistryValues(key))
        parameters.push_back(CParameter(name, ReadRegistryValue(key, name)));
    return parameters;
}

CZORVersion ReadVersion(const std::string& currentVersionKey)
{
    CZORVersion read;
    read.version = ReadRegistryValue(currentVersionKey, "Version");
    read.release = ReadRegistryValue(currentVersionKey, "Release");
    read.modification = ReadRegistryValue(currentVersionKey, "Modification");
    read.serviceLevel = ReadRegistryValue(currentVersionKey, "Service Level");
    return read;
}
