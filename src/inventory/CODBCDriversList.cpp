#include "inventory/CODBCDriversList.h"

#include <iomanip>
#include <ostream>
#include <string>

#include "inventory/RegistryReader.h"
#include "recorder/CLogger.h"

namespace {

const std::string kDriverRule(43, '-');
const std::string kParameterRule(76, '-');

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
    log << "Total ZOR ODBC Drivers:" << drivers.size() << std::endl;
    if (drivers.empty()) {
        log << " ******** There is no ZOR ODBC Driver Installed *********" << std::endl;
        return;
    }
    log << kDriverRule << std::endl;
    log << "Driver Name" << std::endl;
    log << kDriverRule << std::endl;
    for (const CODBCDriver& driver : drivers)
        log << driver.name << std::endl;
    log << kDriverRule << std::endl;
    for (const CODBCDriver& driver : drivers) {
        log << std::endl;
        log << "ODBC Driver:" << driver.name << std::endl;
        log << kParameterRule << std::endl;
        log << "Parameter Name                Value                " << std::endl;
        log << kParameterRule << std::endl;
        for (const CParameter& parameter : driver.parameters)
            log << std::setw(30) << parameter.name << parameter.value
                << std::endl;
        log << kParameterRule << std::endl;
    }
}
