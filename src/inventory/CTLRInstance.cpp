#include "inventory/CTLRInstance.h"

#include "inventory/ProductKeys.h"
#include "inventory/RegistryReader.h"

CTLRInstance::CTLRInstance(const std::string& owningCopyName, const std::string& instanceName)
    : copyName(owningCopyName), name(instanceName)
{
}

void CTLRInstance::CollectParameters()
{
    const std::vector<CParameter> read =
        ReadParameters(GetRegistryRoot() + "\\" + copyName + "\\TLR_PROFILES\\" + name);
    parameters.insert(parameters.end(), read.begin(), read.end());
}
