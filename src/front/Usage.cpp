#include "front/Usage.h"

#include <iostream>

void PrintUsage()
{
    std::cout << "Get and Compress installation history log into a zip file: " << std::endl;
    std::cout << "ZORGetInstallLog -f [ZipFileName]" << std::endl;
    std::cout << " -- ZipFileName : Full Qualified File Name" << std::endl;
    std::cout << " e.g. ZORGetInstallLog -f d:\\HistoryLog.zip" << std::endl;
}
