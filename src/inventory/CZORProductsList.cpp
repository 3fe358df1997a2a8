#include "inventory/CZORProductsList.h"

#include <ostream>
#include <string>

#include "inventory/ProductKeys.h"
#include "inventory/RegistryReader.h"
#include "inventory/InventoryTexts.h"
#include "recorder/CLogger.h"

namespace {

using namespace texts::products;

const std::string kBannerRule(kBannerRuleLength, '*');
const std::string kCopyListRule(kCopyListRuleLength, '-');

}  // namespace

CZORProductsList::CZORProductsList()
{
}

CZORProductsList::~CZORProductsList()
{
    Clear();
}

int CZORProductsList::Collect()
{
    for (const std::string& keyName : EnumRegistrySubKeys(GetRegistryRoot())) {
        if (!IsCopyKeyName(keyName))
            continue;
        CZORCopy copy(keyName);
        copy.layout = GetRegistryLayout();
        copy.Collect();
        copies.push_back(copy);
    }
    return 0;
}

int CZORProductsList::Write()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << kBannerRule << std::endl;
    if (GetRegistryLayout() == LAYOUT_PRE_V9) {
        log << kPartABanner
            << std::endl;
        log << kBannerRule << std::endl;
        if (copies.empty()) {
            log << kNoPartACopies << std::endl;
            return 0;
        }
    } else {
        log << kPartBBanner
            << std::endl;
        log << kBannerRule << std::endl;
        log << std::endl;
        log << kCopyCountLabel << copies.size() << std::endl;
        if (copies.empty()) {
            log << std::endl;
            log << kNoPartBCopies << std::endl;
            return 0;
        }
        log << kCopyListRule << std::endl;
        log << kCopyListHeader << std::endl;
        log << kCopyListRule << std::endl;
        for (const CZORCopy& copy : copies)
            log << copy.name << std::endl;
        log << kCopyListRule << std::endl;
    }
    for (CZORCopy& copy : copies)
        copy.Write();
    return 0;
}

void CZORProductsList::Clear()
{
    copies.clear();
}
