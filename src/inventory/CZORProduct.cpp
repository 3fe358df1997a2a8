#include "inventory/CZORProduct.h"

#include "inventory/ProductKeys.h"
#include "inventory/RegistryReader.h"

CZORProduct::CZORProduct(const std::string& owningCopyName, const std::string& keyName)
    : name(keyName), copyName(owningCopyName)
{
}

// The four version values first, then the product's own, in this order.
void CZORProduct::Collect()
{
    const std::string key = GetRegistryRoot() + "\\" + copyName + "\\" + name + "\\CurrentVersion";
    version = ReadVersion(key);
    productCode = ReadRegistryValue(key, "ProductCode");
    lastModifiedDate = ReadRegistryValue(key, "Last Modified Date");
    description = ReadRegistryValue(key, "Description");
    title = ReadRegistryValue(key, "Title");
}
