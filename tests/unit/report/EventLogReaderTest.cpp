#include <gtest/gtest.h>

#include "ReportTestLogs.h"
#include "report/CEventLogReader.h"
#include "report/CLineSplitter.h"

using namespace reportlogs;

namespace {

SnapshotContent Before()
{
    SnapshotContent content;
    content.localGroups = {"Administrators"};
    content.localMembers = {{"Administrators", "VM\\alice"}};
    content.software = {{"TAQ Inc.", "ZOR Client", "9.0.0"}};
    content.processes = {{100, "explorer.exe"}, {200, "setup.exe"}};
    content.services = {{"Windows Installer", "Stopped"}};
    return content;
}

CEventLogReader Read(const std::string& log, const std::string& eventId = "E1")
{
    CEventLogReader reader(eventId);
    CLineSplitter lines([&reader](const std::string& line) { reader.Line(line); });
    lines.Feed(log.data(), log.size());
    lines.Finish();
    reader.Finish();
    return reader;
}

std::string WholeLog(const SnapshotContent& before, const SnapshotContent& after)
{
    return StartHead("E1", "VM", "Microsoft Windows XP Professional") + StartSnapshot("E1", "Install", before) +
           "Copying files\n<script>document.title='x'</script>\n" + EndSnapshot("E1", "Install", after) +
           EndTail("Install");
}

}  // namespace

TEST(EventLogReader, AWholeLogGivesTheMachineBothSnapshotsAndTheMessages)
{
    SnapshotContent after = Before();
    after.processes.push_back({300, "zorsrv.exe"});
    const CEventLogReader reader = Read(WholeLog(Before(), after));

    EXPECT_EQ(reader.computerName, "VM");
    EXPECT_EQ(reader.operatingSystem, "Microsoft Windows XP Professional");
    EXPECT_EQ(reader.messages,
              (std::vector<std::string>{"Copying files", "<script>document.title='x'</script>"}));
    ASSERT_TRUE(reader.before.present && reader.before.complete);
    ASSERT_TRUE(reader.after.present && reader.after.complete);
    for (std::size_t i = 0; i < kSnapshotPartCount; ++i) {
        EXPECT_TRUE(reader.before.sections[i].complete) << i;
        EXPECT_TRUE(reader.after.sections[i].complete) << i;
    }
    EXPECT_EQ(reader.before[SnapshotPart::Processes].items.count("zorsrv.exe"), 0u);
    EXPECT_EQ(reader.after[SnapshotPart::Processes].items.at("zorsrv.exe").value, "1");
    EXPECT_EQ(reader.after[SnapshotPart::Software].items.at("ZOR Client").value, "9.0.0");
    EXPECT_TRUE(reader.notes.empty());
}

TEST(EventLogReader, ALogCutInTheMiddleOfASnapshotKeepsTheSectionsReadWhole)
{
    const std::string whole = StartHead("E1", "VM", "XP") + StartSnapshot("E1", "Install", Before());
    const std::string cut = whole.substr(0, whole.find("4) Services & Service Status:") + 40);
    const CEventLogReader reader = Read(cut);

    EXPECT_TRUE(reader.before.present);
    EXPECT_FALSE(reader.before.complete);
    EXPECT_TRUE(reader.before[SnapshotPart::Processes].complete);
    EXPECT_TRUE(reader.before[SnapshotPart::Services].present);
    EXPECT_FALSE(reader.before[SnapshotPart::Services].complete);
    EXPECT_FALSE(reader.before[SnapshotPart::ZORProducts].present);
    EXPECT_FALSE(reader.after.present);
    EXPECT_EQ(reader.notes, (std::vector<std::string>{"the snapshot before the install is cut off"}));
}

TEST(EventLogReader, ASecondWholeSnapshotOfTheSameKindIsLeftOutWithANote)
{
    SnapshotContent other = Before();
    other.processes = {{1, "other.exe"}};
    const CEventLogReader reader =
        Read(StartSnapshot("E1", "Install", Before()) + StartSnapshot("E1", "Install", other));
    EXPECT_EQ(reader.before[SnapshotPart::Processes].items.count("setup.exe"), 1u);
    EXPECT_EQ(reader.before[SnapshotPart::Processes].items.count("other.exe"), 0u);
    EXPECT_EQ(reader.notes, (std::vector<std::string>{"a second snapshot before the install was left out"}));
}

TEST(EventLogReader, ASectionThatComesTwiceIsReadFromItsLastCopy)
{
    std::string log = StartSnapshot("E1", "Install", Before());
    const std::string again = "\n3) Current Running Processes:\n\nProcesses:1\n"
                              "--------------------------------------------------- \n"
                              "Process ID         Process Name                     \n"
                              "--------------------------------------------------- \n" +
                              Left("7", 19) + "again.exe\n---------- Process List ( end )-------------------- \n";
    log.insert(log.find("\n4) Services"), again);
    const CEventLogReader reader = Read(log);
    EXPECT_EQ(reader.before[SnapshotPart::Processes].items.size(), 1u);
    EXPECT_EQ(reader.before[SnapshotPart::Processes].items.count("again.exe"), 1u);
    EXPECT_TRUE(reader.before.complete);
}

TEST(EventLogReader, TheTitleTellsAfterFromBeforeWhateverTheOrder)
{
    SnapshotContent after = Before();
    after.services = {};
    const CEventLogReader reader = Read(EndSnapshot("E1", "Install", after) + StartSnapshot("E1", "Install", Before()));
    EXPECT_TRUE(reader.before.complete);
    EXPECT_TRUE(reader.after.complete);
    EXPECT_TRUE(reader.after[SnapshotPart::Services].items.empty());
    EXPECT_EQ(reader.before[SnapshotPart::Services].items.size(), 1u);
}

TEST(EventLogReader, AnEmptyActionAndAnEventIdWithBlanksStillTellTheSnapshots)
{
    const CEventLogReader reader = Read(StartSnapshot("my event", "", Before()) + EndSnapshot("my event", "", Before()),
                                        "my event");
    EXPECT_TRUE(reader.before.complete);
    EXPECT_TRUE(reader.after.complete);
}

TEST(EventLogReader, LinesOfTheRecorderAreNoMessagesAndAnyOtherLineIs)
{
    const std::string log = StartHead("E1", "VM", "XP") + "1) User Group & User Information:\n" +
                            "Result of nothing\n" + EndSnapshot("E1", "Install", Before()) + EndTail("Install") +
                            "after the end\n";
    const CEventLogReader reader = Read(log);
    EXPECT_EQ(reader.messages, (std::vector<std::string>{"1) User Group & User Information:", "Result of nothing",
                                                         "after the end"}));
}

// Each line head that the recorder writes, recorded as a one-line message,
// one after another: two of them make a title and its rule, which open a
// block only where the recorder puts one.
const std::vector<std::string> kLookAlikes = {
    "---------- ZOR Installation History Logger ( Start )----------20061012 10:00:00",
    "EventID       :E9",
    "System Information: ",
    "=============================================",
    std::string(94, '*'),
    "*  Snapshoot for EventID: E1 -- After Install Completed ",
    "*  Snapshoot for EventID: E1 -- Before Install Starts ",
    "*" + std::string(93, ' '),
    "1) User Group & User Information:",
    "3) Current Running Processes:",
    "* End of Snapshoot for EventID: E1 Before Install Starts  ",
    "*End of Snapshoot for EventID: E1 -- After Install Completed ",
    "Result of Install:",
    "=====================================================================",
};

TEST(EventLogReader, AMessageThatReadsLikeALineOfTheRecorderIsAMessageAndTheLogStaysWhole)
{
    SnapshotContent after = Before();
    after.processes.push_back({300, "zorsrv.exe"});
    std::string messages;
    std::vector<std::string> written;
    for (const std::string& line : kLookAlikes) {
        messages += line + "\n";
        written.push_back(line);
    }
    const std::string log = StartHead("E1", "VM", "Microsoft Windows XP Professional") + messages +
                            StartSnapshot("E1", "Install", Before()) + messages +
                            EndSnapshot("E1", "Install", after) + EndTail("Install") + messages;
    const CEventLogReader reader = Read(log);

    std::vector<std::string> expected;
    for (int copy = 0; copy < 3; ++copy)
        expected.insert(expected.end(), written.begin(), written.end());
    EXPECT_EQ(reader.messages, expected);
    EXPECT_EQ(reader.computerName, "VM");
    EXPECT_EQ(reader.operatingSystem, "Microsoft Windows XP Professional");
    ASSERT_TRUE(reader.before.complete);
    ASSERT_TRUE(reader.after.complete);
    for (std::size_t i = 0; i < kSnapshotPartCount; ++i) {
        EXPECT_TRUE(reader.before.sections[i].complete) << i;
        EXPECT_TRUE(reader.after.sections[i].complete) << i;
    }
    EXPECT_EQ(reader.after[SnapshotPart::Processes].items.at("zorsrv.exe").value, "1");
    EXPECT_TRUE(reader.notes.empty());
}

TEST(EventLogReader, MessagesOverTheLimitAreCounted)
{
    std::string log;
    for (std::size_t i = 0; i < CEventLogReader::kMessageLimit + 5; ++i)
        log += "message " + std::to_string(i) + "\n";
    const CEventLogReader reader = Read(log);
    EXPECT_EQ(reader.messages.size(), CEventLogReader::kMessageLimit);
    EXPECT_EQ(reader.messagesLeftOut, 5u);
}

TEST(EventLogReader, ASectionLongerThanAnyTheRecorderWritesIsNotComparedAndEachNoteStandsOnce)
{
    std::string log = StartSnapshot("E1", "Install", Before());
    std::string rows;
    for (std::size_t i = 0; i <= CEventLogReader::kSectionLineLimit; ++i)
        rows += "x\n";
    log.insert(log.find("\n4) Services"), "\n" + rows);
    const CEventLogReader reader = Read(log + log);
    EXPECT_TRUE(reader.before.complete);
    EXPECT_FALSE(reader.before[SnapshotPart::Processes].complete);
    EXPECT_TRUE(reader.before[SnapshotPart::Services].complete);
    EXPECT_EQ(reader.notes,
              (std::vector<std::string>{
                  "a section of the log is too long to be one the recorder wrote: it is not compared",
                  "a second snapshot before the install was left out"}));
}
