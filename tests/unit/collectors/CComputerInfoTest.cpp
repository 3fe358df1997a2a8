// The computer report: the name of the operating system from its version, the
// machine's type, the processors, and the eleven lines of the report.
#include <gtest/gtest.h>

#include "CollectorReport.h"
#include "collectors/CComputerInfo.h"
#include "collectors/MachineNames.h"
#include "platform/Registry.h"

namespace {

const char kProductOptions[] = "SYSTEM\\CurrentControlSet\\Control\\ProductOptions";

class ComputerInfo : public CollectorTest {
protected:
    CComputerInfo Collected()
    {
        CComputerInfo computer;
        EXPECT_EQ(computer.Collect(), 0);
        return computer;
    }
    std::string OsName() { return Collected().osName; }

    // An NT system that knows only the older version structure.
    void SetOldNt(const std::string& servicePack)
    {
        SetVersion(platform::kPlatformWin32NT, 4, 0, 0, 0, servicePack);
        Machine().acceptsExtendedVersion = false;
    }
};

// Whole reports.

TEST_F(ComputerInfo, Windows98ReportHasEmptyType)
{
    Machine().computer.name = "OLDPC";
    SetVersion(platform::kPlatformWindows, 4, 10, 0, 0, " A ");
    SetProcessors(0, 5, 586, 1);
    EXPECT_EQ(Report<CComputerInfo>(), TextLines({
                                           "",
                                           "System Information: ",
                                           "=============================================",
                                           "Computer Name       :OLDPC",
                                           "OS                  :Microsoft Windows 98 ",
                                           "Type                :",
                                           "Service Pack        : A ",
                                           "Number of processors:1",
                                           "CPU                 :Intel Pentium",
                                           "=============================================",
                                           "",
                                       }));
}

TEST_F(ComputerInfo, Nt4WorkstationBeforeLongStructureReadsLowerCaseProductType)
{
    Machine().computer.name = "NT4WKS";
    SetOldNt("Service Pack 5");
    Machine().registry.SetString(kProductOptions, "ProductType", "winnt");
    SetProcessors(0, 5, 586, 1);
    EXPECT_EQ(Report<CComputerInfo>(),
              TextLines({
                  "",
                  "System Information: ",
                  "=============================================",
                  "Computer Name       :NT4WKS",
                  "OS                  : Windows NT 4.0 Workstation SP5 and earlier ",
                  "Type                :",
                  "Service Pack        :Service Pack 5",
                  "Number of processors:1",
                  "CPU                 :Intel Pentium",
                  "=============================================",
                  "",
              }));
}

TEST_F(ComputerInfo, Nt4ServerWithLongStructureHasNoWordWindows)
{
    Machine().computer.name = "NT4SRV";
    SetVersion(platform::kPlatformWin32NT, 4, 0, 3, 0, "Service Pack 6");
    SetProcessors(0, 4, 486, 2);
    EXPECT_EQ(Report<CComputerInfo>(), TextLines({
                                           "",
                                           "System Information: ",
                                           "=============================================",
                                           "Computer Name       :NT4SRV",
                                           "OS                  :Server 4.0 ",
                                           "Type                :Server",
                                           "Service Pack        :Service Pack 6",
                                           "Number of processors:2",
                                           "CPU                 :Intel 486",
                                           "=============================================",
                                           "",
                                       }));
}

TEST_F(ComputerInfo, XpHomeReport)
{
    Machine().computer.name = "KITCHEN";
    SetVersion(platform::kPlatformWin32NT, 5, 1, 1, 0x200, "Service Pack 2");
    SetProcessors(0, 6, 586, 1);
    EXPECT_EQ(Report<CComputerInfo>(), TextLines({
                                           "",
                                           "System Information: ",
                                           "=============================================",
                                           "Computer Name       :KITCHEN",
                                           "OS                  :Microsoft Windows XP Home Edition",
                                           "Type                :Workstation",
                                           "Service Pack        :Service Pack 2",
                                           "Number of processors:1",
                                           "CPU                 :Intel Pentium",
                                           "=============================================",
                                           "",
                                       }));
}

TEST_F(ComputerInfo, Windows2000AdvancedServerReport)
{
    Machine().computer.name = "APPS2000";
    SetVersion(platform::kPlatformWin32NT, 5, 0, 3, 0x2, "Service Pack 4");
    SetProcessors(0, 15, 586, 4);
    EXPECT_EQ(Report<CComputerInfo>(),
              TextLines({
                  "",
                  "System Information: ",
                  "=============================================",
                  "Computer Name       :APPS2000",
                  "OS                  :Microsoft Windows 2000 Advanced Server ",
                  "Type                :Server",
                  "Service Pack        :Service Pack 4",
                  "Number of processors:4",
                  "CPU                 :Intel Pentium",
                  "=============================================",
                  "",
              }));
}

TEST_F(ComputerInfo, Server2003DomainControllerReport)
{
    Machine().computer.name = "DC01";
    SetVersion(platform::kPlatformWin32NT, 5, 2, 2, 0, "Service Pack 1");
    SetProcessors(9, 15, 8664, 2);
    EXPECT_EQ(Report<CComputerInfo>(),
              TextLines({
                  "",
                  "System Information: ",
                  "=============================================",
                  "Computer Name       :DC01",
                  "OS                  :Microsoft Windows Server 2003 family Standard Edition ",
                  "Type                :Domain Controller",
                  "Service Pack        :Service Pack 1",
                  "Number of processors:2",
                  "CPU                 :AMD64",
                  "=============================================",
                  "",
              }));
}

TEST_F(ComputerInfo, Server2003WithWebAndOtherSuiteBitIsStandardEdition)
{
    Machine().computer.name = "WEB01";
    SetVersion(platform::kPlatformWin32NT, 5, 2, 3, 0x410, "");
    SetProcessors(0, 15, 586, 1);
    EXPECT_EQ(Report<CComputerInfo>(),
              TextLines({
                  "",
                  "System Information: ",
                  "=============================================",
                  "Computer Name       :WEB01",
                  "OS                  :Microsoft Windows Server 2003 family Standard Edition ",
                  "Type                :Server",
                  "Service Pack        :",
                  "Number of processors:1",
                  "CPU                 :Intel Pentium",
                  "=============================================",
                  "",
              }));
}

TEST_F(ComputerInfo, Version6WorkstationReportIsProfessionalAlone)
{
    Machine().computer.name = "VISTA";
    SetVersion(platform::kPlatformWin32NT, 6, 0, 1, 0, "Service Pack 1");
    SetProcessors(9, 6, 8664, 2);
    EXPECT_EQ(Report<CComputerInfo>(), TextLines({
                                           "",
                                           "System Information: ",
                                           "=============================================",
                                           "Computer Name       :VISTA",
                                           "OS                  : Professional",
                                           "Type                :Workstation",
                                           "Service Pack        :Service Pack 1",
                                           "Number of processors:2",
                                           "CPU                 :AMD64",
                                           "=============================================",
                                           "",
                                       }));
}

TEST_F(ComputerInfo, Version6ServerReportIsServer40)
{
    Machine().computer.name = "SRV2008";
    SetVersion(platform::kPlatformWin32NT, 6, 0, 3, 0, "Service Pack 2");
    SetProcessors(9, 6, 8664, 8);
    EXPECT_EQ(Report<CComputerInfo>(), TextLines({
                                           "",
                                           "System Information: ",
                                           "=============================================",
                                           "Computer Name       :SRV2008",
                                           "OS                  :Server 4.0 ",
                                           "Type                :Server",
                                           "Service Pack        :Service Pack 2",
                                           "Number of processors:8",
                                           "CPU                 :AMD64",
                                           "=============================================",
                                           "",
                                       }));
}

TEST_F(ComputerInfo, MachineWhereEveryCallFailsPrintsLabelsAlone)
{
    Machine().computer.refusesName = true;
    Machine().acceptsExtendedVersion = false;
    Machine().acceptsVersion = false;
    EXPECT_EQ(Report<CComputerInfo>(), TextLines({
                                           "",
                                           "System Information: ",
                                           "=============================================",
                                           "Computer Name       :",
                                           "OS                  :",
                                           "Type                :",
                                           "Service Pack        :",
                                           "Number of processors:0",
                                           "CPU                 :INTEL ",
                                           "=============================================",
                                           "",
                                       }));
}

TEST_F(ComputerInfo, SystemWithoutWindowsVersionNamesItsDistributionAndKernel)
{
    Machine().computer.name = "BUILDHOST";
    Machine().acceptsExtendedVersion = false;
    Machine().acceptsVersion = false;
    Machine().namesItself = true;
    Machine().systemName = "Debian GNU/Linux 12 (bookworm)";
    Machine().systemRelease = "6.1.0-18-amd64";
    SetProcessors(9, 6, 8664, 2);
    EXPECT_EQ(Report<CComputerInfo>(), TextLines({
                                           "",
                                           "System Information: ",
                                           "=============================================",
                                           "Computer Name       :BUILDHOST",
                                           "OS                  :Debian GNU/Linux 12 (bookworm)",
                                           "Type                :6.1.0-18-amd64",
                                           "Service Pack        :",
                                           "Number of processors:2",
                                           "CPU                 :AMD64",
                                           "=============================================",
                                           "",
                                       }));
}

TEST_F(ComputerInfo, WindowsVersionWinsOverTheSystemsOwnNames)
{
    SetVersion(platform::kPlatformWin32NT, 5, 0, 1, 0, "Service Pack 4");
    Machine().namesItself = true;
    Machine().systemName = "Debian GNU/Linux 12 (bookworm)";
    Machine().systemRelease = "6.1.0-18-amd64";
    const CComputerInfo computer = Collected();
    EXPECT_EQ(computer.osName, "Microsoft Windows 2000 Professional");
    EXPECT_EQ(computer.machineType, "Workstation");
    EXPECT_EQ(computer.servicePack, "Service Pack 4");
}

// The version tree.

TEST_F(ComputerInfo, XpHomeIsWorkstation)
{
    SetVersion(platform::kPlatformWin32NT, 5, 1, 1, 0x200);
    const CComputerInfo computer = Collected();
    EXPECT_EQ(computer.osName, "Microsoft Windows XP Home Edition");
    EXPECT_EQ(computer.machineType, "Workstation");
    EXPECT_FALSE(computer.isDomainController);
}

TEST_F(ComputerInfo, XpWithoutPersonalBitIsProfessional)
{
    SetVersion(platform::kPlatformWin32NT, 5, 1, 1, 0);
    EXPECT_EQ(OsName(), "Microsoft Windows XP Professional");
}

TEST_F(ComputerInfo, Windows2000Professional)
{
    SetVersion(platform::kPlatformWin32NT, 5, 0, 1, 0);
    EXPECT_EQ(OsName(), "Microsoft Windows 2000 Professional");
}

TEST_F(ComputerInfo, Windows2000ServerEditions)
{
    SetVersion(platform::kPlatformWin32NT, 5, 0, 3, 0);
    EXPECT_EQ(OsName(), "Microsoft Windows 2000 Server ");
    SetVersion(platform::kPlatformWin32NT, 5, 0, 3, 0x82);
    EXPECT_EQ(OsName(), "Microsoft Windows 2000 Datacenter Server ");
}

TEST_F(ComputerInfo, Server2003Editions)
{
    SetVersion(platform::kPlatformWin32NT, 5, 2, 3, 0x2);
    EXPECT_EQ(OsName(), "Microsoft Windows Server 2003 family Enterprise Edition ");
    SetVersion(platform::kPlatformWin32NT, 5, 2, 3, 0x82);
    EXPECT_EQ(OsName(), "Microsoft Windows Server 2003 family Datacenter Edition ");
    SetVersion(platform::kPlatformWin32NT, 5, 2, 3, 0x400);
    EXPECT_EQ(OsName(), "Microsoft Windows Server 2003 family Web Edition ");
}

TEST_F(ComputerInfo, Server2003DomainControllerWithoutSuiteBits)
{
    SetVersion(platform::kPlatformWin32NT, 5, 2, 2, 0);
    const CComputerInfo computer = Collected();
    EXPECT_EQ(computer.osName, "Microsoft Windows Server 2003 family Standard Edition ");
    EXPECT_EQ(computer.machineType, "Domain Controller");
    EXPECT_TRUE(computer.isDomainController);
}

TEST_F(ComputerInfo, Server2003WithMask410EndsInStandardEdition)
{
    SetVersion(platform::kPlatformWin32NT, 5, 2, 3, 0x410);
    EXPECT_EQ(OsName(), "Microsoft Windows Server 2003 family Standard Edition ");
}

TEST_F(ComputerInfo, Nt4ServerWithLongStructure)
{
    SetVersion(platform::kPlatformWin32NT, 4, 0, 3, 0);
    EXPECT_EQ(OsName(), "Server 4.0 ");
}

TEST_F(ComputerInfo, Nt4EnterpriseServerReplacesName)
{
    SetVersion(platform::kPlatformWin32NT, 4, 0, 3, 0x2);
    EXPECT_EQ(OsName(), " Server 4.0, Enterprise Edition ");
}

TEST_F(ComputerInfo, Nt4WorkstationWithLongStructureKeepsOlderText)
{
    SetVersion(platform::kPlatformWin32NT, 4, 0, 1, 0);
    EXPECT_EQ(OsName(), "Microsoft Windows NT 3.5.1 or earlier Workstation 4.0");
}

TEST_F(ComputerInfo, Version6WorkstationIsProfessionalWithLeadingBlank)
{
    SetVersion(platform::kPlatformWin32NT, 6, 0, 1, 0);
    EXPECT_EQ(OsName(), " Professional");
}

TEST_F(ComputerInfo, Version6WorkstationWithPersonalBitIsHomeEdition)
{
    SetVersion(platform::kPlatformWin32NT, 6, 0, 1, 0x200);
    EXPECT_EQ(OsName(), " Home Edition");
}

TEST_F(ComputerInfo, Version6ServerIsServer40)
{
    SetVersion(platform::kPlatformWin32NT, 6, 0, 3, 0);
    EXPECT_EQ(OsName(), "Server 4.0 ");
}

TEST_F(ComputerInfo, XpWithMinorAbove2ServerIsServer40)
{
    SetVersion(platform::kPlatformWin32NT, 5, 3, 3, 0);
    EXPECT_EQ(OsName(), "Server 4.0 ");
}

TEST_F(ComputerInfo, UnknownProductTypeLeavesBaseNameAndType)
{
    SetVersion(platform::kPlatformWin32NT, 5, 1, 0, 0);
    const CComputerInfo computer = Collected();
    EXPECT_EQ(computer.osName, "Microsoft Windows XP");
    EXPECT_EQ(computer.machineType, "");
}

TEST_F(ComputerInfo, Windows95FamilyNames)
{
    SetVersion(platform::kPlatformWindows, 4, 0, 0, 0);
    EXPECT_EQ(OsName(), "Microsoft Windows 95 ");
    SetVersion(platform::kPlatformWindows, 4, 10, 0, 0);
    EXPECT_EQ(OsName(), "Microsoft Windows 98 ");
    SetVersion(platform::kPlatformWindows, 4, 90, 0, 0);
    EXPECT_EQ(OsName(), "Microsoft Windows Millennium Edition");
    SetVersion(platform::kPlatformWindows, 4, 20, 0, 0);
    EXPECT_EQ(OsName(), "");
    SetVersion(platform::kPlatformWindows, 3, 10, 0, 0);
    EXPECT_EQ(OsName(), "");
}

TEST_F(ComputerInfo, Win32s)
{
    SetVersion(platform::kPlatformWin32s, 3, 10, 0, 0);
    EXPECT_EQ(OsName(), "Microsoft Win32s");
}

TEST_F(ComputerInfo, UnknownPlatformLeavesNameEmpty)
{
    SetVersion(3, 5, 1, 1, 0);
    const CComputerInfo computer = Collected();
    EXPECT_EQ(computer.osName, "");
    EXPECT_EQ(computer.machineType, "");
}

TEST_F(ComputerInfo, ServicePackIsCsdTextWithoutNumericFallBack)
{
    SetVersion(platform::kPlatformWin32NT, 5, 1, 1, 0, "");
    Machine().version.servicePackMajor = 3;
    const CComputerInfo computer = Collected();
    EXPECT_EQ(computer.servicePack, "");
    EXPECT_EQ(computer.servicePackMajor, 3u);
}

TEST_F(ComputerInfo, VersionNumbersAreKept)
{
    SetVersion(platform::kPlatformWin32NT, 5, 2, 3, 0, "Service Pack 2");
    Machine().version.buildNumber = 3790;
    Machine().version.servicePackMajor = 2;
    Machine().version.servicePackMinor = 1;
    const CComputerInfo computer = Collected();
    EXPECT_EQ(computer.majorVersion, 5u);
    EXPECT_EQ(computer.minorVersion, 2u);
    EXPECT_EQ(computer.buildNumber, 3790u);
    EXPECT_EQ(computer.servicePackMajor, 2u);
    EXPECT_EQ(computer.servicePackMinor, 1u);
    EXPECT_EQ(computer.productType, 3u);
}

TEST_F(ComputerInfo, FailedVersionAtBothSizesStillCollectsProcessors)
{
    Machine().acceptsExtendedVersion = false;
    Machine().acceptsVersion = false;
    SetProcessors(9, 6, 8664, 4);
    const CComputerInfo computer = Collected();
    EXPECT_EQ(computer.osName, "");
    EXPECT_EQ(computer.machineType, "");
    EXPECT_FALSE(computer.isDomainController);
    EXPECT_EQ(computer.processorCount, 4u);
    EXPECT_EQ(computer.cpuName, "AMD64");
}

// The product options of an NT system too old for the long structure.

TEST_F(ComputerInfo, OldNtProductTypesCompareWithoutCase)
{
    SetOldNt("");
    Machine().registry.SetString(kProductOptions, "ProductType", "LanManNt");
    EXPECT_EQ(OsName(), " Windows NT 4.0 Server SP5 and earlier ");
    Machine().registry.SetString(kProductOptions, "ProductType", "ServerNT");
    EXPECT_EQ(OsName(), "Windows NT 4.0 Advanced Server SP5 and earlier ");
}

TEST_F(ComputerInfo, OldNtLeavesTypeEmptyAndIsNoDomainController)
{
    SetOldNt("");
    Machine().registry.SetString(kProductOptions, "ProductType", "LANMANNT");
    const CComputerInfo computer = Collected();
    EXPECT_EQ(computer.machineType, "");
    EXPECT_FALSE(computer.isDomainController);
}

TEST_F(ComputerInfo, OldNtWithUnknownProductTypeKeepsBaseName)
{
    SetOldNt("");
    Machine().registry.SetString(kProductOptions, "ProductType", "WINNT40");
    EXPECT_EQ(OsName(), "Microsoft Windows NT 3.5.1 or earlier");
}

TEST_F(ComputerInfo, OldNtWithProductOptionsRefusedKeepsBaseName)
{
    SetOldNt("");
    Machine().registry.SetString(kProductOptions, "ProductType", "WINNT");
    Machine().registry.RefuseKey(kProductOptions, platform::kStatusAccessDenied);
    EXPECT_EQ(OsName(), "Microsoft Windows NT 3.5.1 or earlier");
}

TEST_F(ComputerInfo, OldNtWithoutProductTypeKeepsBaseNameAndKeyOpen)
{
    SetOldNt("");
    Machine().registry.AddKey(kProductOptions);
    EXPECT_EQ(OsName(), "Microsoft Windows NT 3.5.1 or earlier");
    EXPECT_EQ(Machine().registry.openKeys.size(), 1u);
    EXPECT_EQ(Machine().registry.closedKeys, 0u);
}

TEST_F(ComputerInfo, OldNtProductTypeLongerThan80BytesIsAFailedRead)
{
    SetOldNt("");
    Machine().registry.SetString(kProductOptions, "ProductType", "WINNT" + std::string(80, ' '));
    EXPECT_EQ(OsName(), "Microsoft Windows NT 3.5.1 or earlier");
    EXPECT_EQ(Machine().registry.closedKeys, 0u);
}

TEST_F(ComputerInfo, OldNtProductTypeOf80BytesIsRead)
{
    SetOldNt("");
    // 79 characters and the terminator fill the buffer exactly.
    Machine().registry.SetString(kProductOptions, "ProductType", std::string(79, 'X'));
    EXPECT_EQ(OsName(), "Microsoft Windows NT 3.5.1 or earlier");
    EXPECT_EQ(Machine().registry.closedKeys, 1u);
}

TEST_F(ComputerInfo, OldNtClosesProductOptionsAfterGoodRead)
{
    SetOldNt("");
    Machine().registry.SetString(kProductOptions, "ProductType", "WINNT");
    Collected();
    EXPECT_EQ(Machine().registry.openKeys.size(), 1u);
    EXPECT_EQ(Machine().registry.closedKeys, 1u);
}

TEST_F(ComputerInfo, ProductOptionsAreNotReadWithLongStructure)
{
    SetVersion(platform::kPlatformWin32NT, 4, 0, 0, 0);
    Machine().registry.SetString(kProductOptions, "ProductType", "WINNT");
    EXPECT_EQ(OsName(), "Microsoft Windows NT 3.5.1 or earlier");
    EXPECT_TRUE(Machine().registry.openKeys.empty());
}

TEST_F(ComputerInfo, OldStructureLeavesExtendedFieldsZero)
{
    SetOldNt("Service Pack 5");
    Machine().version.servicePackMajor = 5;
    Machine().version.productType = 1;
    const CComputerInfo computer = Collected();
    EXPECT_EQ(computer.servicePackMajor, 0u);
    EXPECT_EQ(computer.productType, 0u);
    EXPECT_EQ(computer.servicePack, "Service Pack 5");
}

// Computer name.

TEST_F(ComputerInfo, FailedComputerNameLeavesItEmpty)
{
    Machine().computer.name = "HIDDEN";
    Machine().computer.refusesName = true;
    EXPECT_EQ(Collected().computerName, "");
}

TEST_F(ComputerInfo, ComputerNameOf14CharactersFitsLengthWord)
{
    Machine().computer.name = "ABCDEFGHIJKLMN";
    EXPECT_EQ(Collected().computerName, "ABCDEFGHIJKLMN");
}

// The length word of 15 leaves no room for a name of 15 characters and its
// terminator, so GetComputerNameA refuses it.
TEST_F(ComputerInfo, ComputerNameOf15CharactersIsRefusedByLengthWord)
{
    Machine().computer.name = "ABCDEFGHIJKLMNO";
    EXPECT_EQ(Collected().computerName, "");
}

// Processors.

TEST_F(ComputerInfo, IntelLevel6WithPentiumTypeIsIntelPentium)
{
    SetProcessors(0, 6, 586, 1);
    EXPECT_EQ(Collected().cpuName, "Intel Pentium");
}

TEST_F(ComputerInfo, Amd64With8664TypeIsAmd64)
{
    SetProcessors(9, 15, 8664, 1);
    const CComputerInfo computer = Collected();
    EXPECT_EQ(computer.cpuName, "AMD64");
    EXPECT_EQ(computer.processorArchitecture, 9u);
}

TEST(ProcessorNames, ByArchitectureWhenTypeIsUnknown)
{
    EXPECT_EQ(ProcessorName(0, 3, 0), "INTEL ");
    EXPECT_EQ(ProcessorName(0, 4, 0), "Intel 80486");
    EXPECT_EQ(ProcessorName(0, 5, 0), "Intel Pentium");
    EXPECT_EQ(ProcessorName(0, 6, 0), "INTEL ");
    EXPECT_EQ(ProcessorName(1, 0, 0), "MIPS ");
    EXPECT_EQ(ProcessorName(2, 0, 0), "ALPHA ");
    EXPECT_EQ(ProcessorName(3, 0, 0), "PPC");
    EXPECT_EQ(ProcessorName(6, 0, 0), "IA64");
    EXPECT_EQ(ProcessorName(9, 0, 0), "AMD64");
    EXPECT_EQ(ProcessorName(10, 0, 0), "IA32_ON_WIN64");
}

TEST(ProcessorNames, OtherArchitecturesAreUnknown)
{
    for (std::uint16_t architecture : {4, 5, 7, 8, 11, 12, 0xFFFF})
        EXPECT_EQ(ProcessorName(architecture, 0, 0), "Unknown Processor") << architecture;
}

TEST(ProcessorNames, ProcessorTypeHasLastWord)
{
    EXPECT_EQ(ProcessorName(9, 0, 386), "Intel 386");
    EXPECT_EQ(ProcessorName(0, 4, 486), "Intel 486");
    EXPECT_EQ(ProcessorName(0xFFFF, 0, 586), "Intel Pentium");
    EXPECT_EQ(ProcessorName(6, 0, 2200), "IA64");
}

TEST(ProductOptionsCompare, EqualityIgnoresCaseOnly)
{
    EXPECT_TRUE(EqualIgnoringCase("WINNT", "winnt"));
    EXPECT_TRUE(EqualIgnoringCase("LANMANNT", "LanManNT"));
    EXPECT_FALSE(EqualIgnoringCase("WINNT", "WINNT "));
    EXPECT_FALSE(EqualIgnoringCase("WINNT", ""));
}

}  // namespace
