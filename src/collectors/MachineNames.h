// The decision rules of the computer report, as plain functions of the numbers
// and texts that the system reports: the names of the Windows editions, of the
// processors, and the product options' text. Each one changes the composed
// name the way the report's tree of tests does, so that what it leaves alone
// keeps whatever the name held before.
#pragma once

#include <cstdint>
#include <string>

// The suite mask bits that the edition names depend on.
constexpr std::uint16_t kSuiteEnterprise = 0x2;
constexpr std::uint16_t kSuiteDatacenter = 0x80;
constexpr std::uint16_t kSuitePersonal = 0x200;
constexpr std::uint16_t kSuiteBlade = 0x400;

// The product types of the extended version structure.
constexpr std::uint8_t kProductWorkstation = 1;
constexpr std::uint8_t kProductDomainController = 2;
constexpr std::uint8_t kProductServer = 3;

// The Windows 95 family (platform id 1): 95, 98 and Millennium Edition under
// major version 4; every other version leaves `osName` alone.
void NameWindows95Family(std::uint32_t major, std::uint32_t minor, std::string& osName);

// The base name of the NT family (platform id 2), before the product type has
// its say: Server 2003, XP and 2000 under major 5, the 3.5.1 text for major 4
// and lower (NT 4.0 included); other versions leave `osName` alone.
void NameNtBase(std::uint32_t major, std::uint32_t minor, std::string& osName);

// What a workstation adds to the name: " Workstation 4.0" under major 4, else
// " Home Edition" or " Professional" by the personal bit.
void NameWorkstation(std::uint32_t major, std::uint16_t suiteMask, std::string& osName);

// What a server or domain controller adds to the name, or puts in its place
// for versions other than 5.0 and 5.2.
void NameServer(std::uint32_t major, std::uint32_t minor, std::uint16_t suiteMask,
                std::string& osName);

// The name of an NT system too old for the extended structure, by the
// "ProductType" value of the product options; a value that matches none of
// the known ones leaves `osName` alone.
void NameFromProductOptions(const std::string& productType, std::string& osName);

// The processor's name from the architecture and level, which the processor
// type has the last word on.
std::string ProcessorName(std::uint16_t architecture, std::uint16_t level,
                          std::uint32_t processorType);

// lstrcmpiA's equality: the same text when letters are compared without regard
// to case.
bool EqualIgnoringCase(const std::string& one, const std::string& other);

// GetComputerNameA with a zeroed 16-byte buffer and a length word of 15: true
// and the name up to its first NUL on success; `name` is untouched on failure.
bool ReadComputerName(std::string& name);
