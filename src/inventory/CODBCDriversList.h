// The product's ODBC drivers: those of the drivers that the ODBC installer
// lists whose name holds "TAQ ZOR", each with its settings.
#pragma once

#include <vector>

#include "inventory/CODBCDriver.h"

class CODBCDriversList {
public:
    // Appends the product's drivers; the list is not emptied first.
    void Collect();
    void Write();

    std::vector<CODBCDriver> drivers;
};
