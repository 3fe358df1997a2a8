#include "inventory/CZORInstance.h"

#include "inventory/ProductKeys.h"
#include "inventory/RegistryReader.h"

CZORInstance::CZORInstance(const std::string& owningCopyName, const std::string& instanceName)
    : copyName(owningCopyName), name(instanceName)
{
}

void CZORInstance::CollectParameters()
{
    const std::vector<CParameter> read =
        ReadParameters(GetRegistryRoot() + "\\" + copyName + "\\PROFILES\\" + name);
    parameters.insert(parameters.end(), read.begin(), read.end());
}
