// The machine as one block of the event log, before the install at -start and
// after it at -end: a frame, six numbered sections, each run by one collector,
// and closing lines. The two forms of the frame differ, and stay so.
#include <iomanip>
#include <ostream>
#include <string>

#include "collectors/CComputerInfo.h"
#include "collectors/CProcessList.h"
#include "collectors/CProductsList.h"
#include "collectors/CServicesList.h"
#include "collectors/CUsersList.h"
#include "inventory/CODBCDriversList.h"
#include "inventory/CZORProductsList.h"
#include "inventory/RegistryReader.h"
#include "recorder/CInstallEvent.h"
#include "recorder/CLogger.h"
#include "recorder/EventTexts.h"

namespace {

const std::string kRule(texts::kSnapshotRuleLength, '*');
const std::string kBlankFrameLine = "*" + std::string(texts::kSnapshotFrameWidth - 1, ' ');

// Collects and reports one collector, made and destroyed within the section so
// that only one collector's data is held at a time.
template <typename Collector>
void RunCollector()
{
    Collector collector;
    collector.Collect();
    collector.Write();
}

}  // namespace

void CInstallEvent::WriteSystemInfo()
{
    RunCollector<CComputerInfo>();
}

void CInstallEvent::WriteSnapshot()
{
    WriteSnapshotFrame();
    WriteUsers();
    WriteSoftware();
    WriteProcesses();
    WriteServices();
    WriteZORProducts();
    WriteODBCDrivers();
    WriteSnapshotClosing();
}

// The title is one string, written behind a field width of 14 that it always
// exceeds.
void CInstallEvent::WriteSnapshotFrame()
{
    CLogger& log = CLogger::Instance();
    if (Mode == texts::kStartMode) {
        log << kRule << std::endl;
        log << texts::kSnapshotTitle << std::setw(14)
            << EventID + texts::kSnapshotBefore + GetAction() + " Starts " << std::endl;
        log << kBlankFrameLine << std::endl;
        log << kRule << std::endl;
    } else if (Mode == texts::kEndMode) {
        log << kRule << std::endl;
        log << kBlankFrameLine << std::endl;
        log << texts::kSnapshotTitle << std::setw(14)
            << EventID + texts::kSnapshotAfter + GetAction() + " Completed " << std::endl;
        log << kBlankFrameLine << std::endl;
        log << kRule << std::endl;
    }
}

void CInstallEvent::WriteSnapshotClosing()
{
    CLogger& log = CLogger::Instance();
    if (Mode == texts::kStartMode) {
        log << kRule << std::endl;
        log << texts::kSnapshotStartClosing
            << EventID + " Before " + GetAction() + " Starts  " << std::endl;
        log << kRule << std::endl;
    } else if (Mode == texts::kEndMode) {
        log << kRule << std::endl;
        log << texts::kSnapshotEndClosing
            << EventID + texts::kSnapshotAfter + GetAction() + " Completed " << std::endl;
        log << kRule << std::endl;
    }
}

// An empty line, then the section's number, counted on, and its title.
void CInstallEvent::WriteSectionHeading(const char* title)
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << SectionNumber++ << title << std::endl;
}

void CInstallEvent::WriteUsers()
{
    WriteSectionHeading(texts::kSnapshotSectionTitles[0]);
    RunCollector<CUsersList>();
}

void CInstallEvent::WriteSoftware()
{
    WriteSectionHeading(texts::kSnapshotSectionTitles[1]);
    RunCollector<CProductsList>();
}

void CInstallEvent::WriteProcesses()
{
    WriteSectionHeading(texts::kSnapshotSectionTitles[2]);
    RunCollector<CProcessList>();
}

void CInstallEvent::WriteServices()
{
    WriteSectionHeading(texts::kSnapshotSectionTitles[3]);
    RunCollector<CServicesList>();
}

// One list in two passes, one for each layout of the product's keys: PART A
// for the releases before V9, PART B for V9 and later. The selector stays at
// the V9 layout behind the section.
void CInstallEvent::WriteZORProducts()
{
    WriteSectionHeading(texts::kSnapshotSectionTitles[4]);
    SetRegistryLayout(LAYOUT_PRE_V9);
    CZORProductsList products;
    SetRegistryLayout(LAYOUT_PRE_V9);
    products.Collect();
    products.Write();
    products.Clear();
    SetRegistryLayout(LAYOUT_V9);
    products.Collect();
    products.Write();
    products.Clear();
}

// The list of drivers is made ahead of the section's heading.
void CInstallEvent::WriteODBCDrivers()
{
    CODBCDriversList drivers;
    WriteSectionHeading(texts::kSnapshotSectionTitles[5]);
    drivers.Collect();
    drivers.Write();
}
