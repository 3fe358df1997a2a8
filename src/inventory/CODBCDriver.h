// One ODBC driver of the product, with the values of its own key below the
// ODBC installer's key.
#pragma once

#include <string>
#include <vector>

#include "inventory/CParameter.h"

class CODBCDriver {
public:
    explicit CODBCDriver(const std::string& driverName);

    void CollectParameters();

    std::string name;
    std::vector<CParameter> parameters;
};
