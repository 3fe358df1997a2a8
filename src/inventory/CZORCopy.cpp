#include "inventory/CZORCopy.h"

#include <iomanip>
#include <ostream>

#include "inventory/ProductKeys.h"
#include "inventory/RegistryReader.h"
#include "recorder/CLogger.h"

namespace {

const std::string kCopyRule(48, '-');
const std::string kProfileRule(120, '-');
const std::string kProductRule(128, '-');
const std::string kInstanceRule(33, '-');
const std::string kParameterRule(68, '-');

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
        log << "ZOR Installation Copy Name:" << name << std::endl;
    log << kCopyRule << std::endl;
    log << "Total Products     :" << products.size() << std::endl;
    log << "Total ZOR Instances:" << instances.size() << std::endl;
    log << kCopyRule << std::endl;
    WriteGlobalProfiles();
    WriteProducts();
    WriteInstances();
}

void CZORCopy::WriteGlobalProfiles()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << "Global Profiles:" << std::endl;
    log << kProfileRule << std::endl;
    for (const CParameter& parameter : globalProfile)
        log << std::setw(30) << parameter.name + ":" << parameter.value << std::endl;
    log << kProfileRule << std::endl;
}

void CZORCopy::WriteProducts()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << "ZOR Products installed:" << std::endl;
    log << kProductRule << std::endl;
    log << "Product Name                            Product Code                            "
           "Version   Service Level       Last Modified Date"
        << std::endl;
    log << kProductRule << std::endl;
    for (const CZORProduct& product : products) {
        log << std::setw(40) << product.name << std::setw(40) << product.productCode
            << std::setw(10)
            << product.version.version + "." + product.version.release + "." +
                   product.version.modification
            << std::setw(20) << product.version.serviceLevel << std::setw(20)
            << product.lastModifiedDate << std::endl;
    }
    log << kProductRule << std::endl;
}

void CZORCopy::WriteInstances()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << "ZOR Instances:" << std::endl;
    log << kInstanceRule << std::endl;
    log << "Instance Name                    " << std::endl;
    log << kInstanceRule << std::endl;
    for (const CZORInstance& instance : instances)
        log << instance.name << std::endl;
    log << kInstanceRule << std::endl;
    log << std::endl;
    for (const CZORInstance& instance : instances) {
        log << "ZOR Instance Name:" << instance.name << std::endl;
        log << kParameterRule << std::endl;
        log << "Parameter Name                      Value                  " << std::endl;
        log << kParameterRule << std::endl;
        for (const CParameter& parameter : instance.parameters)
            log << std::setw(36) << parameter.name << parameter.value << std::endl;
        log << kParameterRule << std::endl;
        log << std::endl;
    }
}
