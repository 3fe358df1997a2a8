#include "inventory/CZORProductsList.h"

#include <ostream>
#include <string>

#include "inventory/ProductKeys.h"
#include "inventory/RegistryReader.h"
#include "recorder/CLogger.h"

namespace {

const std::string kBannerRule(93, '*');
const std::string kCopyListRule(45, '-');

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
        log << "*  PART A --ZOR Installed Copies Information -- Prior to V9                                 *"
            << std::endl;
        log << kBannerRule << std::endl;
        if (copies.empty()) {
            log << "There is no ZOR prior to V9 Installed " << std::endl;
            return 0;
        }
    } else {
        log << "*  PART B --ZOR Installed Copies Information -- V9 & Later                                  *"
            << std::endl;
        log << kBannerRule << std::endl;
        log << std::endl;
        log << "Total ZOR Copies:" << copies.size() << std::endl;
        if (copies.empty()) {
            log << std::endl;
            log << "There is no ZOR V9 & later installed " << std::endl;
            return 0;
        }
        log << kCopyListRule << std::endl;
        log << "ZOR Copy Name" << std::endl;
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
