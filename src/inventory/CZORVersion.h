// One reading of a CurrentVersion key: the four version values as text.
#pragma once

#include <string>

class CZORVersion {
public:
    std::string version;
    std::string release;
    std::string modification;
    std::string serviceLevel;
};
