#include "inventory/CODBCDriversList.h"

#include <iomanip>
#include <ostream>
#include <string>

#include "inventory/RegistryReader.h"
#include "inventory/InventoryTexts.h"
#include "recorder/CLogger.h"

namespace {

using namespace texts::odbc;

const std::string kDriverRule(kDriverRuleLength, '-');
const std::string kParameterRule(kParameterRuleLength, '-');

}  // namespace

// The driver names are the value names of the "ODBC Drivers" key; their data
// is not read.
void CODBCDriversList::Collect()
{
    for (const std::string& name : EnumRegistryValues("SOFTWARE\\ODBC\\ODBCINST.INI\\ODBC Drivers")) {
        if (name.find("TAQ ZOR") == std::string::npos)
            continue;
        CODBCDriver driver(name);
        driver.CollectParameters();
        drivers.push_back(driver);
    }
}

// The widths take whatever alignment the stream holds.
void CODBCDriversList::Write()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << kDriverCountLabel << drivers.size() << std::endl;
    if (drivers.empty()) {
        log << kNoDrivers << std::endl;
        return;
    }
    log << kDriverRule << std::endl;
    log << kDriverListHeader << std::endl;
    log << kDriverRule << std::endl;
    for (const CODBCDriver& driver : drivers)
        log << driver.name << std::endl;
    log << kDriverRule << std::endl;
    for (const CODBCDriver& driver : drivers) {
        log << std::endl;
        log << kDriverNameLabel << driver.name << std::endl;
        log << kParameterRule << std::endl;
        log << kParameterHeader << std::endl;
        log << kParameterRule << std::endl;
        for (const CParameter& parameter : driver.parameters)
            log << std::setw(kParameterNameWidth) << parameter.name << parameter.value
                << std::endl;
        log << kParameterRule << std::endl;
    }
}
