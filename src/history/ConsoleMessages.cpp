// The one place where the recorder tells of a folder that it could not make.
#include "history/ConsoleMessages.h"

#include <iostream>

void PrintFailedToCreatePath(const std::string& path)
{
    std::cout << " Failed to create path:" << path;
}
