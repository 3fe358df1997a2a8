// One registry value of the product's keys or of an ODBC driver's key: its
// name, and its data as text (empty for types other than REG_SZ and REG_DWORD).
#pragma once

#include <string>

class CParameter {
public:
    CParameter(const std::string& parameterName, const std::string& parameterValue)
        : name(parameterName), value(parameterValue)
    {
    }

    std::string name;
    std::string value;
};
