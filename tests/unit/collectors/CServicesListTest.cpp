// The services report: the two-call enumeration with its failure paths, the
// state words, the display-name filter and the report's lines.
#include <cstdint>
#include <ios>
#include <iomanip>
#include <string>

#include <gtest/gtest.h>

#include "ServicesProductsCapture.h"
#include "collectors/CServicesList.h"
#include "collectors/KeywordFilter.h"

namespace {

const std::string kRule = "-------------------------------------------------------------------- ";
const std::string kHeader = "Service Name                                                Status   ";

// 60 blanks, the width of the display name column, to cut pads from.
const std::string kBlanks60(60, ' ');

// A row: the display name padded to 60, the state padded to 15.
std::string Row(const std::string& displayName, const std::string& state)
{
    std::string row = displayName;
    if (row.size() < 60)
        row += kBlanks60.substr(0, 60 - row.size());
    row += state;
    if (state.size() < 15)
        row += kBlanks60.substr(0, 15 - state.size());
    return row;
}

class ServicesReport : public LoggedReportTest {
protected:
    platform::scripted::Services& Manager() { return machine.Machine().services; }

    void AddService(const std::string& serviceName, const std::string& displayName,
                    std::uint32_t state)
    {
        Manager().services.push_back({serviceName, displayName, state});
    }

    // Collects and writes on one fresh collector, as a snapshot section does.
    int CollectAndWrite()
    {
        CServicesList list;
        const int result = list.Collect();
        list.Write();
        return result;
    }

    static std::string Frame()
    {
        return TextLines({"", kRule, kHeader, kRule, kRule});
    }
};

TEST(ServiceStateWords, EachKnownStateHasItsWords)
{
    EXPECT_EQ(ServiceStateWords(1), "Stopped");
    EXPECT_EQ(ServiceStateWords(2), "Is starting");
    EXPECT_EQ(ServiceStateWords(3), "Is stopping");
    EXPECT_EQ(ServiceStateWords(4), "Started");
    EXPECT_EQ(ServiceStateWords(5), "The service continue is pending");
    EXPECT_EQ(ServiceStateWords(6), "The service pause is pending");
    EXPECT_EQ(ServiceStateWords(7), "Paused");
}

TEST(ServiceStateWords, AnyOtherStateIsUknownAsSpelledInTheReport)
{
    EXPECT_EQ(ServiceStateWords(0), "Uknown");
    EXPECT_EQ(ServiceStateWords(8), "Uknown");
    EXPECT_EQ(ServiceStateWords(0xFFFFFFFFu), "Uknown");
}

TEST(ServiceSelection, FirstKeywordBeginningWithAllLetsEveryServiceThrough)
{
    const std::string table[2] = {"ALLES", "ZOR"};
    EXPECT_TRUE(MatchesKeywords("anything", table, 2, AllSwitch::Prefix));
    EXPECT_FALSE(MatchesKeywords("anything", table, 2, AllSwitch::WholeWord));
}

TEST_F(ServicesReport, ManagerRefusedGivesErrorAndFrameWithoutRows)
{
    Manager().managerOpens = false;
    Manager().openError = 5;
    AddService("ZORAgent", "ZOR Agent", 4);
    EXPECT_EQ(CollectAndWrite(), 5);
    EXPECT_EQ(Manager().enumerationCalls, 0);
    EXPECT_EQ(Logged(), Frame());
}

TEST_F(ServicesReport, NoServicesGivesFrameWithoutRows)
{
    EXPECT_EQ(CollectAndWrite(), 0);
    EXPECT_EQ(Logged(), Frame());
}

TEST_F(ServicesReport, FailedCollectionLooksLikeEmptyOne)
{
    Manager().allocationFails = true;
    AddService("ZORAgent", "ZOR Agent", 4);
    CollectAndWrite();
    EXPECT_EQ(Logged(), Frame());
}

TEST_F(ServicesReport, RunningServiceShowsStarted)
{
    AddService("ZORAgent", "ZOR Agent", 4);
    EXPECT_EQ(CollectAndWrite(), 0);
    // "ZOR Agent" is 9 characters, "Started" 7.
    EXPECT_EQ(Logged(), TextLines({"", kRule, kHeader, kRule,
                                   "ZOR Agent" + std::string(51, ' ') + "Started" +
                                       std::string(8, ' '),
                                   kRule}));
}

TEST_F(ServicesReport, PendingStatesLongerThanTheColumnArePrintedWhole)
{
    AddService("ZORA", "ZOR A", 5);
    AddService("ZORB", "ZOR B", 6);
    CollectAndWrite();
    EXPECT_EQ(Logged(),
              TextLines({"", kRule, kHeader, kRule,
                         "ZOR A" + std::string(55, ' ') + "The service continue is pending",
                         "ZOR B" + std::string(55, ' ') + "The service pause is pending", kRule}));
}

TEST_F(ServicesReport, DisplayNameOfSixtyCharactersRunsIntoTheState)
{
    const std::string sixty = "ZOR " + std::string(56, 'x');
    const std::string sixtyOne = "ZOR " + std::string(57, 'y');
    AddService("a", sixty, 1);
    AddService("b", sixtyOne, 7);
    CollectAndWrite();
    EXPECT_EQ(Logged(), TextLines({"", kRule, kHeader, kRule, sixty + "Stopped        ",
                                   sixtyOne + "Paused         ", kRule}));
}

TEST_F(ServicesReport, WindowsInstallerIsListedInAnyState)
{
    AddService("msiserver", "Windows Installer", 1);
    AddService("msi2", "The Windows Installer helper", 42);
    CollectAndWrite();
    EXPECT_EQ(Logged(), TextLines({"", kRule, kHeader, kRule,
                                   Row("Windows Installer", "Stopped"),
                                   Row("The Windows Installer helper", "Uknown"), kRule}));
}

TEST_F(ServicesReport, LowerCaseZorAndKeyNameOnlyAreNotListed)
{
    AddService("zorsvc", "zor helper", 4);
    AddService("ZORKeyOnly", "Helper of the product", 4);
    AddService("Zor", "Zor Mixed Case", 4);
    CollectAndWrite();
    EXPECT_EQ(Logged(), Frame());
}

TEST_F(ServicesReport, RowsKeepTheManagersOrderAndSkipUnselected)
{
    AddService("zsvc", "ZOR Last In Name Order", 1);
    AddService("other", "Print Spooler", 4);
    AddService("asvc", "ZOR First In Name Order", 3);
    AddService("msiserver", "Windows Installer", 2);
    CollectAndWrite();
    EXPECT_EQ(Logged(), TextLines({"", kRule, kHeader, kRule,
                                   Row("ZOR Last In Name Order", "Stopped"),
                                   Row("ZOR First In Name Order", "Is stopping"),
                                   Row("Windows Installer", "Is starting"), kRule}));
}

TEST_F(ServicesReport, CollectKeepsEveryServiceAndItsKeyName)
{
    AddService("Spooler", "Print Spooler", 4);
    AddService("ZORAgent", "ZOR Agent", 99);
    CServicesList list;
    EXPECT_EQ(list.Collect(), 0);
    ASSERT_EQ(list.services.size(), 2u);
    EXPECT_EQ(list.services[0].serviceName, "Spooler");
    EXPECT_EQ(list.services[0].displayName, "Print Spooler");
    EXPECT_EQ(list.services[0].state, "Started");
    EXPECT_EQ(list.services[1].serviceName, "ZORAgent");
    EXPECT_EQ(list.services[1].state, "Uknown");
    EXPECT_FALSE(list.IsSelected(list.services[0]));
    EXPECT_TRUE(list.IsSelected(list.services[1]));
}

TEST_F(ServicesReport, FirstCallLearnsTheSizeAndBufferIsExactlyThat)
{
    Manager().bytesNeeded = 4321;
    AddService("ZORAgent", "ZOR Agent", 4);
    CServicesList list;
    EXPECT_EQ(list.Collect(), 0);
    EXPECT_EQ(Manager().enumerationCalls, 2);
    ASSERT_EQ(Manager().bufferSizesPassed.size(), 2u);
    EXPECT_EQ(Manager().bufferSizesPassed[0], 0u);
    EXPECT_EQ(Manager().bufferSizesPassed[1], 4321u);
    ASSERT_EQ(Manager().allocationSizes.size(), 1u);
    EXPECT_EQ(Manager().allocationSizes[0], 4321u);
    EXPECT_EQ(list.services.size(), 1u);
}

TEST_F(ServicesReport, BufferHoldsEntriesAndTheirNames)
{
    AddService("ab", "ZOR", 4);       // 3 + 4 bytes of names
    AddService("c", "Windows", 4);    // 2 + 8 bytes of names
    CServicesList list;
    EXPECT_EQ(list.Collect(), 0);
    // ENUM_SERVICE_STATUSA: two pointers and seven 32-bit words, aligned.
    const std::uint32_t entry = sizeof(void*) == 8 ? 48 : 36;
    ASSERT_EQ(Manager().allocationSizes.size(), 1u);
    EXPECT_EQ(Manager().allocationSizes[0], 2 * entry + 17);
}

TEST_F(ServicesReport, AllWellFreesTheBufferAndClosesTheManager)
{
    AddService("ZORAgent", "ZOR Agent", 4);
    CServicesList list;
    EXPECT_EQ(list.Collect(), 0);
    EXPECT_EQ(Manager().managersOpened, 1);
    EXPECT_EQ(Manager().managersClosed, 1);
    EXPECT_EQ(Manager().buffersFreed, 1);
}

TEST_F(ServicesReport, AllocationFailureGivesNotEnoughMemoryAndLeavesManagerOpen)
{
    Manager().allocationFails = true;
    AddService("ZORAgent", "ZOR Agent", 4);
    CServicesList list;
    EXPECT_EQ(list.Collect(), 8);
    EXPECT_TRUE(list.services.empty());
    EXPECT_EQ(Manager().enumerationCalls, 1);
    EXPECT_EQ(Manager().managersOpened, 1);
    EXPECT_EQ(Manager().managersClosed, 0);
}

TEST_F(ServicesReport, SecondCallFailureGivesItsErrorAndReleasesNothing)
{
    Manager().failingCall = 2;
    Manager().failingCallError = 5;
    AddService("ZORAgent", "ZOR Agent", 4);
    CServicesList list;
    EXPECT_EQ(list.Collect(), 5);
    EXPECT_TRUE(list.services.empty());
    EXPECT_EQ(Manager().managersClosed, 0);
    EXPECT_EQ(Manager().buffersFreed, 0);
}

TEST_F(ServicesReport, ServiceAddedBetweenTheCallsEndsWithEmptyListAndNoRetry)
{
    AddService("ZORAgent", "ZOR Agent", 4);
    Manager().addedAfterFirstCall.push_back({"ZORNew", "ZOR New", 4});
    CServicesList list;
    EXPECT_EQ(list.Collect(), 234);
    // The entries that did fit the buffer are not taken either.
    EXPECT_TRUE(list.services.empty());
    EXPECT_EQ(Manager().enumerationCalls, 2);
    EXPECT_EQ(Manager().managersClosed, 0);
    EXPECT_EQ(Manager().buffersFreed, 0);
    list.Write();
    EXPECT_EQ(Logged(), Frame());
}

TEST_F(ServicesReport, FirstCallResultIsNotLookedAt)
{
    Manager().failingCall = 1;
    Manager().failingCallError = 1234;
    CServicesList list;
    EXPECT_EQ(list.Collect(), 0);
    ASSERT_EQ(Manager().allocationSizes.size(), 1u);
    EXPECT_EQ(Manager().allocationSizes[0], 0u);
    EXPECT_EQ(Manager().enumerationCalls, 2);
}

TEST_F(ServicesReport, CollectEmptiesTheListFirst)
{
    Manager().managerOpens = false;
    Manager().openError = 1065;
    CServicesList list;
    list.services.push_back({"ZORAgent", "ZOR Agent", "Started"});
    EXPECT_EQ(list.Collect(), 1065);
    EXPECT_TRUE(list.services.empty());
}

TEST_F(ServicesReport, RowFillIsBlankWhateverFillWasSet)
{
    AddService("ZORAgent", "ZOR Agent", 4);
    CLogger::Instance().fill('*');
    CollectAndWrite();
    EXPECT_EQ(Logged(), TextLines({"", kRule, kHeader, kRule, Row("ZOR Agent", "Started"), kRule}));
}

TEST_F(ServicesReport, RowTurnsOnLeftBitAloneAndLeavesItOn)
{
    AddService("ZORAgent", "ZOR Agent", 4);
    CLogger& log = CLogger::Instance();
    log.setf(std::ios_base::internal);
    CollectAndWrite();
    EXPECT_EQ(log.flags() & std::ios_base::adjustfield,
              std::ios_base::left | std::ios_base::internal);
}

TEST_F(ServicesReport, LeftAlignmentStaysForWhatIsWrittenNext)
{
    AddService("ZORAgent", "ZOR Agent", 4);
    CollectAndWrite();
    CLogger::Instance() << std::setw(6) << 42 << std::endl;
    EXPECT_EQ(Logged(), TextLines({"", kRule, kHeader, kRule, Row("ZOR Agent", "Started"), kRule,
                                   "42    "}));
}

TEST_F(ServicesReport, ReportWithoutRowsLeavesAlignmentAlone)
{
    AddService("other", "Print Spooler", 4);
    CollectAndWrite();
    EXPECT_EQ(CLogger::Instance().flags() & std::ios_base::left, std::ios_base::fmtflags());
}

TEST(ServiceLiterals, RuleIsSixtyEightHyphensAndOneBlank)
{
    EXPECT_EQ(kRule, std::string(68, '-') + " ");
    EXPECT_EQ(kHeader.size(), 69u);
}

}  // namespace
