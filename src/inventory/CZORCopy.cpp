#include "inventory/CZORCopy.h"

#include <iomanip>
#include <ostream>

#include "inventory/ProductKeys.h"
#include "inventory/RegistryReader.h"
#include "inventory/InventoryTexts.h"
#include "recorder/CLogger.h"

namespace {

using namespace texts::products;

const std::string kCopyRule(kCopyRuleLength, '-');
const std::string kProfileRule(kProfileRuleLength, '-');
const std::string kProductRule(kProductRuleLength, '-');
const std::string kInstanceRule(kInstanceRuleLength, '-');
const std::string kParameterRule(kParameterRuleLength, '-');

}  // namespace

CZORCopy::CZORCopy(const std::string& copyName) : layout(0), name(copyName)
{
}

// The root is asked anew for every path.
std::string CZORCopy::Key() const
{
    return GetRegistryRoot() + "\\" + name;
}

void CZORCopy::Collect()
{
    CollectGlobalProfile();
    CollectInstances();
    CollectTLRInstances();
    version = ReadVersion(Key() + "\\CurrentVersion");
    for (const std::string& subKey : EnumRegistrySubKeys(Key())) {
        if (!IsProductKeyName(subKey))
            continue;
        CZORProduct product(name, subKey);
        product.Collect();
        AddProduct(product);
    }
}

void CZORCopy::CollectGlobalProfile()
{
    const std::vector<CParameter> read = ReadParameters(Key() + "\\GLOBAL_PROFILE");
    globalProfile.insert(globalProfile.end(), read.begin(), read.end());
}

void CZORCopy::CollectInstances()
{
    for (const std::string& instanceName : EnumRegistrySubKeys(Key() + "\\PROFILES")) {
        CZORInstance instance(name, instanceName);
        instance.CollectParameters();
        instances.push_back(instance);
    }
}

// The listing's key has a blank between the root and its backslash, so it
// names a sibling of the root with a trailing blank; the parameters of each
// instance are then read below the root itself.
void CZORCopy::CollectTLRInstances()
{
    for (const std::string& instanceName :
         EnumRegistrySubKeys(GetRegistryRoot() + " \\" + name + "\\TLR_PROFILES")) {
        CTLRInstance instance(name, instanceName);
        instance.CollectParameters();
        tlrInstances.push_back(instance);
    }
}

void CZORCopy::AddProduct(CZORProduct product)
{
    products.push_back(product);
}

// The copy's name is printed only under the V9 layout, as the selector stands
// now; widths take whatever alignment the stream holds.
void CZORCopy::Write()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    if (GetRegistryLayout() != LAYOUT_PRE_V9)
        log << kCopyNameLabel << name << std::endl;
    log << kCopyRule << std::endl;
    log << kProductCountLabel << products.size() << std::endl;
    log << kInstanceCountLabel << instances.size() << std::endl;
    log << kCopyRule << std::endl;
    WriteGlobalProfiles();
    WriteProducts();
    WriteInstances();
}

void CZORCopy::WriteGlobalProfiles()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << kGlobalProfilesTitle << std::endl;
    log << kProfileRule << std::endl;
    for (const CParameter& parameter : globalProfile)
        log << std::setw(kGlobalNameWidth) << parameter.name + ":" << parameter.value << std::endl;
    log << kProfileRule << std::endl;
}

void CZORCopy::WriteProducts()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << kProductsTitle << std::endl;
    log << kProductRule << std::endl;
    log << kProductHeader << std::endl;
    log << kProductRule << std::endl;
    for (const CZORProduct& product : products) {
        log << std::setw(kProductColumnWidths[0]) << product.name
            << std::setw(kProductColumnWidths[1]) << product.productCode
            << std::setw(kProductColumnWidths[2])
            << product.version.version + "." + product.version.release + "." +
                   product.version.modification
            << std::setw(kProductColumnWidths[3]) << product.version.serviceLevel
            << std::setw(kProductColumnWidths[4]) << product.lastModifiedDate << std::endl;
    }
    log << kProductRule << std::endl;
}

void CZORCopy::WriteInstances()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << kInstancesTitle << std::endl;
    log << kInstanceRule << std::endl;
    log << kInstanceHeader << std::endl;
    log << kInstanceRule << std::endl;
    for (const CZORInstance& instance : instances)
        log << instance.name << std::endl;
    log << kInstanceRule << std::endl;
    log << std::endl;
    for (const CZORInstance& instance : instances) {
        log << kInstanceNameLabel << instance.name << std::endl;
        log << kParameterRule << std::endl;
        log << kParameterHeader << std::endl;
        log << kParameterRule << std::endl;
        for (const CParameter& parameter : instance.parameters)
            log << std::setw(kParameterNameWidth) << parameter.name << parameter.value << std::endl;
        log << kParameterRule << std::endl;
        log << std::endl;
    }
}
