#include "collectors/MachineNames.h"

#include <cstring>

#include "platform/ComputerName.h"

void NameWindows95Family(std::uint32_t major, std::uint32_t minor, std::string& osName)
{
    if (major != 4)
        return;
    if (minor == 0)
        osName = "Microsoft Windows 95 ";
    else if (minor == 10)
        osName = "Microsoft Windows 98 ";
    else if (minor == 90)
        osName = "Microsoft Windows Millennium Edition";
}

void NameNtBase(std::uint32_t major, std::uint32_t minor, std::string& osName)
{
    if (major == 5) {
        if (minor == 2)
            osName = "Microsoft Windows Server 2003 family";
        else if (minor == 1)
            osName = "Microsoft Windows XP";
        else if (minor == 0)
            osName = "Microsoft Windows 2000";
    } else if (major <= 4) {
        osName = "Microsoft Windows NT 3.5.1 or earlier";
    }
}

void NameWorkstation(std::uint32_t major, std::uint16_t suiteMask, std::string& osName)
{
    if (major == 4)
        osName += " Workstation 4.0";
    else if (suiteMask & kSuitePersonal)
        osName += " Home Edition";
    else
        osName += " Professional";
}

// The Web edition is told by the whole mask, not by its bit: a Web server with
// any other suite bit is named Standard.
void NameServer(std::uint32_t major, std::uint32_t minor, std::uint16_t suiteMask,
                std::string& osName)
{
    if (major == 5 && minor == 2) {
        if (suiteMask & kSuiteDatacenter)
            osName += " Datacenter Edition ";
        else if (suiteMask & kSuiteEnterprise)
            osName += " Enterprise Edition ";
        else if (suiteMask == kSuiteBlade)
            osName += " Web Edition ";
        else
            osName += " Standard Edition ";
    } else if (major == 5 && minor == 0) {
        if (suiteMask & kSuiteDatacenter)
            osName += " Datacenter Server ";
        else if (suiteMask & kSuiteEnterprise)
            osName += " Advanced Server ";
        else
            osName += " Server ";
    } else if (suiteMask & kSuiteEnterprise) {
        osName = " Server 4.0, Enterprise Edition ";
    } else {
        osName = "Server 4.0 ";
    }
}

void NameFromProductOptions(const std::string& productType, std::string& osName)
{
    if (EqualIgnoringCase("WINNT", productType))
        osName = " Windows NT 4.0 Workstation SP5 and earlier ";
    else if (EqualIgnoringCase("LANMANNT", productType))
        osName = " Windows NT 4.0 Server SP5 and earlier ";
    else if (EqualIgnoringCase("SERVERNT", productType))
        osName = "Windows NT 4.0 Advanced Server SP5 and earlier ";
}

// The level of an Intel processor says 80486 where its type says 486; both
// wordings are the system's.
std::string ProcessorName(std::uint16_t architecture, std::uint16_t level,
                          std::uint32_t processorType)
{
    std::string name;
    switch (architecture) {
    case 0:
        name = "INTEL ";
        if (level == 4)
            name = "Intel 80486";
        else if (level == 5)
            name = "Intel Pentium";
        break;
    case 1:
        name = "MIPS ";
        break;
    case 2:
        name = "ALPHA ";
        break;
    case 3:
        name = "PPC";
        break;
    case 6:
        name = "IA64";
        break;
    case 9:
        name = "AMD64";
        break;
    case 10:
        name = "IA32_ON_WIN64";
        break;
    default:
        name = "Unknown Processor";
        break;
    }
    if (processorType == 386)
        name = "Intel 386";
    else if (processorType == 486)
        name = "Intel 486";
    else if (processorType == 586)
        name = "Intel Pentium";
    return name;
}

bool EqualIgnoringCase(const std::string& one, const std::string& other)
{
    if (one.size() != other.size())
        return false;
    for (std::size_t i = 0; i < one.size(); ++i) {
        char a = one[i];
        char b = other[i];
        if (a >= 'A' && a <= 'Z')
            a = static_cast<char>(a - 'A' + 'a');
        if (b >= 'A' && b <= 'Z')
            b = static_cast<char>(b - 'A' + 'a');
        if (a != b)
            return false;
    }
    return true;
}

bool ReadComputerName(std::string& name)
{
    char buffer[16] = {};
    std::uint32_t length = 15;
    if (!platform::QueryComputerName(buffer, length))
        return false;
    const void* end = std::memchr(buffer, '\0', sizeof buffer);
    name.assign(buffer, end == nullptr ? sizeof buffer
                                       : static_cast<std::size_t>(static_cast<const char*>(end) - buffer));
    return true;
}
