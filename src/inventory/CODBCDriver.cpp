#include "inventory/CODBCDriver.h"

#include "inventory/ProductKeys.h"

CODBCDriver::CODBCDriver(const std::string& driverName) : name(driverName)
{
}

void CODBCDriver::CollectParameters()
{
    const std::vector<CParameter> read = ReadParameters("SOFTWARE\\ODBC\\ODBCINST.INI\\" + name);
    parameters.insert(parameters.end(), read.begin(), read.end());
}
