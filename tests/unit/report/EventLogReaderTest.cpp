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

// The log as -start leaves it: its head and the snapshot before the install.
std::string StartOfLog()
{
    return StartHead("E1", "VM", "XP") + StartSnapshot("E1", "Install", Before());
}

// The machine after an install that started its server.
SnapshotContent Installed()
{
    SnapshotContent content = Before();
    content.processes.push_back({300, "zorsrv.exe"});
    return content;
}

// A copy of the machine with a process that a message made up.
SnapshotContent WithFakeProcess(SnapshotContent content)
{
    content.processes.push_back({999, "FAKEPROC.exe"});
    return content;
}

CEventLogReader Read(const std::string& log, const std::string& eventId = "E1",
                     std::shared_ptr<CSectionMemo> memo = std::make_shared<CSectionMemo>(),
                     CEventLogReader::InstallEnd end = CEventLogReader::InstallEnd::Unknown)
{
    CEventLogReader reader(eventId, std::move(memo), end);
    CLineSplitter lines([&reader, &lines](const std::string& line) { reader.Line(line, lines.BytesCutOfLine()); });
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

CEventLogReader ReadEnded(const std::string& log, CEventLogReader::InstallEnd end)
{
    return Read(log, "E1", std::make_shared<CSectionMemo>(), end);
}

// The lines of a text that are not blank, as messages show them.
std::vector<std::string> NonBlankLines(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find('\n', at);
        if (end > at)
            lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

std::vector<std::string> Joined(std::vector<std::vector<std::string>> parts)
{
    std::vector<std::string> all;
    for (const auto& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

std::string LookAlikeNote(std::size_t lines, const std::string& why)
{
    return "the messages hold " + std::to_string(lines) + " lines that read like a snapshot " + why;
}

const char kAfterElsewhere[] = "after the install: the one that stands where the recorder writes it is compared";

// The lines of the processes section in the log that are not blank, and
// their bytes without line ends.
std::pair<std::size_t, std::size_t> ProcessLinesAndBytes(const std::string& log)
{
    const std::size_t from = log.find('\n', log.find("3) Current Running Processes")) + 1;
    const std::size_t to = log.find("4) Services", from);
    std::size_t lines = 0;
    std::size_t bytes = 0;
    for (std::size_t at = from; at < to;) {
        const std::size_t end = std::min(log.find('\n', at), to);
        lines += end > at ? 1 : 0;
        bytes += end - at;
        at = end + 1;
    }
    return {lines, bytes};
}

}  // namespace

TEST(EventLogReader, AWholeLogGivesTheMachineBothSnapshotsAndTheMessages)
{
    const SnapshotContent after = Installed();
    const CEventLogReader reader = Read(WholeLog(Before(), after));

    EXPECT_EQ(reader.computerName, "VM");
    EXPECT_EQ(reader.operatingSystem, "Microsoft Windows XP Professional");
    EXPECT_EQ(reader.messages,
              (std::vector<std::string>{"Copying files", "<script>document.title='x'</script>"}));
    ASSERT_TRUE(reader.before.present && reader.before.complete);
    ASSERT_TRUE(reader.after.present && reader.after.complete);
    for (std::size_t i = 0; i < kSnapshotPartCount; ++i) {
        EXPECT_TRUE(reader.before.Section(i).complete) << i;
        EXPECT_TRUE(reader.after.Section(i).complete) << i;
    }
    EXPECT_EQ(reader.before[SnapshotPart::Processes].items.count("zorsrv.exe"), 0u);
    EXPECT_EQ(reader.after[SnapshotPart::Processes].items.at("zorsrv.exe").value, "1");
    EXPECT_EQ(reader.after[SnapshotPart::Software].items.at("ZOR Client").value, "9.0.0");
    EXPECT_TRUE(reader.notes.empty());
}

TEST(EventLogReader, ALogCutInTheMiddleOfASnapshotKeepsTheSectionsReadWhole)
{
    const std::string whole = StartOfLog();
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

TEST(EventLogReader, ASecondSnapshotBeforeTheInstallIsAMessageInItsPlace)
{
    SnapshotContent other = Before();
    other.processes = {{1, "other.exe"}};
    const std::string lookAlike = StartSnapshot("E1", "Install", other);
    const CEventLogReader reader = Read(StartOfLog() +
                                        "first\n" + lookAlike + "last\n");
    EXPECT_EQ(reader.before[SnapshotPart::Processes].items.count("setup.exe"), 1u);
    EXPECT_EQ(reader.before[SnapshotPart::Processes].items.count("other.exe"), 0u);
    EXPECT_TRUE(reader.before.complete);
    EXPECT_EQ(reader.messages, Joined({{"first"}, NonBlankLines(lookAlike), {"last"}}));
    EXPECT_EQ(reader.notes, (std::vector<std::string>{LookAlikeNote(
                                NonBlankLines(lookAlike).size(),
                                "before the install: the one at the head of the log is compared")}));
}

// A message of many lines that copies the snapshot after an install, with a
// process of its own, ahead of the real one; or copies the result block and
// the end banner as well, so that of the two blocks that the result block
// follows, the later stands where the recorder writes it. The copy goes to
// the messages whole, in its place among them.
TEST(EventLogReader, AMessageThatCopiesTheSnapshotAfterOrTheWholeEndIsAMessageAndTheRealOneIsCompared)
{
    const SnapshotContent after = Installed();
    const SnapshotContent fake = WithFakeProcess(after);
    const std::string head = StartOfLog();
    for (const std::string& lookAlike :
         {EndSnapshot("E1", "Install", fake), EndSnapshot("E1", "Install", fake) + EndTail("Install")}) {
        for (const auto end : {CEventLogReader::InstallEnd::Ended, CEventLogReader::InstallEnd::Unknown}) {
            const CEventLogReader reader = ReadEnded(head + "Copying files\n" + lookAlike + "Done\n" +
                                                         EndSnapshot("E1", "Install", after) + EndTail("Install"),
                                                     end);
            ASSERT_TRUE(reader.after.complete);
            EXPECT_EQ(reader.after[SnapshotPart::Processes].items.count("zorsrv.exe"), 1u);
            EXPECT_EQ(reader.after[SnapshotPart::Processes].items.count("FAKEPROC.exe"), 0u);
            EXPECT_EQ(reader.messages, Joined({{"Copying files"}, NonBlankLines(lookAlike), {"Done"}}));
            EXPECT_EQ(reader.notes,
                      (std::vector<std::string>{LookAlikeNote(NonBlankLines(lookAlike).size(), kAfterElsewhere)}));
        }
    }
}

// An install that never ended wrote no snapshot after it: a block that reads
// like one, as the last thing in its log, is a message; where the install
// ended or History.ini doesn't say, it is that snapshot.
TEST(EventLogReader, ABlockAfterTheInstallIsAMessageWhereTheInstallNeverEnded)
{
    const SnapshotContent fake = WithFakeProcess(Before());
    const std::string lookAlike = EndSnapshot("E1", "Install", fake);
    const std::string log = StartOfLog() + "one\n" + lookAlike;

    const CEventLogReader neverEnded = ReadEnded(log, CEventLogReader::InstallEnd::NeverEnded);
    EXPECT_FALSE(neverEnded.after.present);
    EXPECT_EQ(neverEnded.messages, Joined({{"one"}, NonBlankLines(lookAlike)}));
    EXPECT_EQ(neverEnded.notes,
              (std::vector<std::string>{LookAlikeNote(
                  NonBlankLines(lookAlike).size(), "after the install, which an install that never ended has not written")}));

    for (const auto end : {CEventLogReader::InstallEnd::Ended, CEventLogReader::InstallEnd::Unknown}) {
        const CEventLogReader ended = ReadEnded(log, end);
        EXPECT_TRUE(ended.after.complete);
        EXPECT_EQ(ended.after[SnapshotPart::Processes].items.count("FAKEPROC.exe"), 1u);
        EXPECT_EQ(ended.messages, (std::vector<std::string>{"one"}));
        EXPECT_TRUE(ended.notes.empty());
    }
}

// An install that never ended has written no snapshot after it, nor a
// result block: a message that copies both is messages too.
TEST(EventLogReader, AnInstallThatNeverEndedHasNoSnapshotAfterItEvenWithAResultBlock)
{
    const SnapshotContent fake = WithFakeProcess(Before());
    const std::string block = EndSnapshot("E1", "Install", fake);
    const std::string lookAlike = block + EndTail("Install");
    const CEventLogReader reader =
        ReadEnded(StartOfLog() + lookAlike + "Done\n",
                  CEventLogReader::InstallEnd::NeverEnded);
    EXPECT_FALSE(reader.after.present);
    EXPECT_EQ(reader.messages, Joined({NonBlankLines(lookAlike), {"Done"}}));
    EXPECT_EQ(reader.notes, (std::vector<std::string>{LookAlikeNote(
                                NonBlankLines(block).size(),
                                "after the install, which an install that never ended has not written")}));
}

// Messages that copy a snapshot's lines without its last rule, of its
// opening or of its closing, ahead of the real -end: the rule that follows
// them begins the -end's own frame, so the copied lines stay messages, and
// the -end's snapshot is compared.
TEST(EventLogReader, CopiedLinesOfASnapshotWithoutTheirLastRuleLeaveTheEndsFrameWhole)
{
    const SnapshotContent after = Installed();
    const SnapshotContent fake = WithFakeProcess(after);
    const std::string rule(94, '*');
    const std::string fakeBlock = EndSnapshot("E1", "Install", fake);
    const std::string beforeOpening = StartSnapshot("E1", "Install", fake);
    const std::vector<std::string> copies = {
        fakeBlock.substr(0, fakeBlock.size() - rule.size() - 1),
        beforeOpening.substr(0, beforeOpening.find("\n" + rule + "\n", 1) + 1),
        fakeBlock.substr(0, fakeBlock.find("\n" + rule + "\n", 1) + 1),
    };
    for (const std::string& copy : copies) {
        const CEventLogReader reader =
            Read(StartOfLog() + copy +
                 EndSnapshot("E1", "Install", after) + EndTail("Install"));
        EXPECT_TRUE(reader.after.complete) << copy;
        EXPECT_EQ(reader.after[SnapshotPart::Processes].items.count("zorsrv.exe"), 1u) << copy;
        EXPECT_EQ(reader.after[SnapshotPart::Processes].items.count("FAKEPROC.exe"), 0u) << copy;
        EXPECT_EQ(reader.messages, NonBlankLines(copy)) << copy;
    }
}

// A message that copies a snapshot after from its blank frame line on makes
// a frame with the closing rule of the snapshot before: that rule stays the
// snapshot's, and the message is shown as it was written.
TEST(EventLogReader, ACopyThatBeginsBehindTheRuleLeavesTheClosingRuleOutOfTheMessages)
{
    const SnapshotContent fake = WithFakeProcess(Before());
    const std::string block = EndSnapshot("E1", "Install", fake);
    const std::string lookAlike = block.substr(block.find('\n') + 1);
    const CEventLogReader reader =
        Read(StartOfLog() + lookAlike +
             EndSnapshot("E1", "Install", Before()) + EndTail("Install"));
    EXPECT_EQ(reader.after[SnapshotPart::Processes].items.count("FAKEPROC.exe"), 0u);
    EXPECT_EQ(reader.messages, NonBlankLines(lookAlike));
    EXPECT_EQ(reader.notes,
              (std::vector<std::string>{LookAlikeNote(NonBlankLines(lookAlike).size(), kAfterElsewhere)}));
}

// A copied result block cut short: the -end's frame rule ends it, and the
// -end's snapshot, which its own result block follows, is compared.
TEST(EventLogReader, ACopiedResultBlockCutShortEndsAtTheEndsFrame)
{
    const SnapshotContent after = Installed();
    const SnapshotContent fake = WithFakeProcess(after);
    const std::string tail = EndTail("Install");
    const std::string lookAlike = EndSnapshot("E1", "Install", fake) + tail.substr(0, tail.find("End   Time"));
    const CEventLogReader reader =
        Read(StartOfLog() + lookAlike +
             EndSnapshot("E1", "Install", after) + tail);
    EXPECT_EQ(reader.after[SnapshotPart::Processes].items.count("zorsrv.exe"), 1u);
    EXPECT_EQ(reader.after[SnapshotPart::Processes].items.count("FAKEPROC.exe"), 0u);
    EXPECT_EQ(reader.messages, NonBlankLines(lookAlike));
    EXPECT_EQ(reader.notes,
              (std::vector<std::string>{LookAlikeNote(NonBlankLines(lookAlike).size(), kAfterElsewhere)}));
}

// A log cut off in the -end's snapshot, behind a copied snapshot and result
// The result block behind the snapshot after the install tells how the event
// ended; one that a message copies, with a snapshot of its own ahead of the
// real one, doesn't, and neither does one that the log cuts off.
TEST(EventLogReader, TheResultBlockBehindTheSnapshotAfterTellsHowTheEventEnded)
{
    const SnapshotContent after = Installed();
    std::string copied = EndTail("Repair");
    copied.replace(copied.find(":Success"), 8, ":1603");
    const CEventLogReader reader =
        Read(StartOfLog() + EndSnapshot("E1", "Install", WithFakeProcess(after)) + copied +
             EndSnapshot("E1", "Install", after) + EndTail("Install"));
    ASSERT_TRUE(reader.resultBlock);
    const EventRecord& block = *reader.resultBlock;
    EXPECT_EQ(block.startTime, "20061012 10:00:00");
    EXPECT_EQ(block.endTime, "20061012 10:05:00");
    EXPECT_EQ(block.product, "ZOR 9.1");
    EXPECT_EQ(block.serviceLevel, "SL2");
    EXPECT_EQ(block.type, "Silent");
    EXPECT_EQ(block.action, "Install");
    EXPECT_EQ(block.result, "Success");
    EXPECT_EQ(block.logFile, "C:\\setup.log");
    EXPECT_EQ(block.traceFile, "");
    EXPECT_EQ(block.completeFlag, "TRUE");

    const std::string whole = StartOfLog() + EndSnapshot("E1", "Install", after) + EndTail("Install");
    const std::string cut = whole.substr(0, whole.find("Log File Name"));
    EXPECT_FALSE(Read(cut).resultBlock);
    EXPECT_FALSE(Read(StartOfLog() + EndSnapshot("E1", "Install", after)).resultBlock);
}

// block: the snapshot the log ends in is the recorder's, cut off.
TEST(EventLogReader, ASnapshotThatTheLogEndsInWinsOverACopyAheadOfIt)
{
    const SnapshotContent after = Installed();
    const SnapshotContent fake = WithFakeProcess(after);
    const std::string lookAlike = EndSnapshot("E1", "Install", fake) + EndTail("Install");
    std::string real = EndSnapshot("E1", "Install", after);
    real.resize(real.find("4) Services"));
    const CEventLogReader reader =
        Read(StartOfLog() + lookAlike + real);
    EXPECT_TRUE(reader.after.present);
    EXPECT_FALSE(reader.after.complete);
    EXPECT_EQ(reader.after[SnapshotPart::Processes].items.count("zorsrv.exe"), 1u);
    EXPECT_EQ(reader.after[SnapshotPart::Processes].items.count("FAKEPROC.exe"), 0u);
    EXPECT_EQ(reader.messages, NonBlankLines(lookAlike));
    EXPECT_EQ(reader.notes,
              (std::vector<std::string>{"the snapshot after the install is cut off",
                                        LookAlikeNote(NonBlankLines(lookAlike).size(), kAfterElsewhere)}));
}

// Many copied blocks make one note, with their lines and their number.
TEST(EventLogReader, ManyCopiedBlocksAreToldInOneNote)
{
    const std::string lookAlike = EndSnapshot("E1", "Install", Before());
    std::string messages;
    for (int copy = 0; copy < 5; ++copy)
        messages += lookAlike + "step\n";
    const CEventLogReader reader =
        Read(StartOfLog() + messages +
             EndSnapshot("E1", "Install", Before()) + EndTail("Install"));
    EXPECT_EQ(reader.messages, NonBlankLines(messages));
    EXPECT_EQ(reader.notes, (std::vector<std::string>{"the messages hold " +
                                                      std::to_string(5 * NonBlankLines(lookAlike).size()) +
                                                      " lines in 5 blocks that read like snapshots " +
                                                      kAfterElsewhere}));
}

// The opening of a snapshot that never closes swallows the messages behind
// it until the real frame begins: all of them are messages again.
TEST(EventLogReader, AnUnclosedBlockAheadOfTheRealSnapshotGivesBackEveryLineAsAMessage)
{
    const SnapshotContent after = Installed();
    std::string opening = EndSnapshot("E1", "Install", Before());
    opening.resize(opening.find("4) Services"));
    const std::string messages = opening + "step 2\nstep 3\n";
    const CEventLogReader reader =
        Read(StartOfLog() + messages +
             EndSnapshot("E1", "Install", after) + EndTail("Install"));
    EXPECT_EQ(reader.after[SnapshotPart::Processes].items.count("zorsrv.exe"), 1u);
    EXPECT_TRUE(reader.after.complete);
    EXPECT_EQ(reader.messages, NonBlankLines(messages));
    EXPECT_EQ(reader.notes,
              (std::vector<std::string>{LookAlikeNote(NonBlankLines(messages).size(), kAfterElsewhere)}));
}

// An -end called twice without a copy name adds a second snapshot, result
// block and banner: the last is the install's end.
TEST(EventLogReader, OfTwoEndsTheLastIsComparedAndTheFirstIsShownAsMessages)
{
    SnapshotContent first = Before();
    first.processes.push_back({300, "first.exe"});
    SnapshotContent second = Before();
    second.processes.push_back({301, "second.exe"});
    const std::string firstEnd = EndSnapshot("E1", "Install", first) + EndTail("Install");
    const CEventLogReader reader = Read(StartOfLog() +
                                       firstEnd + EndSnapshot("E1", "Install", second) + EndTail("Install"));
    EXPECT_EQ(reader.after[SnapshotPart::Processes].items.count("second.exe"), 1u);
    EXPECT_EQ(reader.after[SnapshotPart::Processes].items.count("first.exe"), 0u);
    EXPECT_EQ(reader.messages, NonBlankLines(firstEnd));
}

// A look-alike of more lines than the messages show goes to them in its
// place: the messages that came after it are counted as left out.
TEST(EventLogReader, ALookAlikeOverTheMessageLimitPushesTheLaterMessagesOut)
{
    SnapshotContent fake = Before();
    for (int id = 0; id < static_cast<int>(CEventLogReader::kMessageLimit); ++id)
        fake.processes.push_back({1000 + id, "p" + std::to_string(id) + ".exe"});
    const std::string lookAlike = EndSnapshot("E1", "Install", fake) + EndTail("Install");
    const std::string longMessage(CEventLogReader::kMessageTextLimit + 7, 'm');
    const CEventLogReader reader =
        Read(StartOfLog() + "one\n" + lookAlike +
             longMessage + "\nthree\n" + EndSnapshot("E1", "Install", Before()) + EndTail("Install"));
    const std::vector<std::string> lines = NonBlankLines(lookAlike);
    std::vector<std::string> expected = Joined({{"one"}, lines});
    expected.resize(CEventLogReader::kMessageLimit);
    EXPECT_EQ(reader.messages, expected);
    EXPECT_EQ(reader.messagesLeftOut, 1 + lines.size() + 2 - CEventLogReader::kMessageLimit);
    EXPECT_TRUE(reader.messagesCut.empty());
    EXPECT_FALSE(reader.after[SnapshotPart::Processes].items.count("p0.exe"));
}

// A cut message keeps its count of what was cut where a look-alike is put
// ahead of it.
TEST(EventLogReader, AMessageCutToItsLimitKeepsItsCountWhenALookAlikeGoesAheadOfIt)
{
    const std::string lookAlike = EndSnapshot("E1", "Install", Before()) + EndTail("Install");
    const std::string longMessage(CEventLogReader::kMessageTextLimit + 7, 'm');
    const CEventLogReader reader =
        Read(StartOfLog() + lookAlike + longMessage +
             "\n" + EndSnapshot("E1", "Install", Before()) + EndTail("Install"));
    const std::size_t lines = NonBlankLines(lookAlike).size();
    ASSERT_EQ(reader.messages.size(), lines + 1);
    ASSERT_EQ(reader.messagesCut.size(), 1u);
    EXPECT_EQ(reader.messagesCut[0].index, lines);
    EXPECT_EQ(reader.messagesCut[0].bytesCut, 7u);
}

// Rows of a section are what the machine holds: one that reads like the
// closing title, without the rule ahead of it, doesn't end the snapshot.
TEST(EventLogReader, ARowThatReadsLikeTheClosingTitleDoesNotEndTheSnapshot)
{
    SnapshotContent after = Before();
    after.software.push_back({"*End of Snapshoot for EventID: E1 -- After Install Completed ", "Trap", "1.0"});
    after.processes.push_back({300, "zorsrv.exe"});
    const CEventLogReader reader = Read(WholeLog(Before(), after));
    EXPECT_TRUE(reader.after.complete);
    EXPECT_EQ(reader.after[SnapshotPart::Processes].items.count("zorsrv.exe"), 1u);
    EXPECT_EQ(reader.messages,
              (std::vector<std::string>{"Copying files", "<script>document.title='x'</script>"}));
    EXPECT_TRUE(reader.notes.empty());
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
    "---------- ZOR Installation History Logger ( End ) ----------20061012 10:05:00",
};

TEST(EventLogReader, AMessageThatReadsLikeALineOfTheRecorderIsAMessageAndTheLogStaysWhole)
{
    const SnapshotContent after = Installed();
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
        EXPECT_TRUE(reader.before.Section(i).complete) << i;
        EXPECT_TRUE(reader.after.Section(i).complete) << i;
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
    const auto own = ProcessLinesAndBytes(log);
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
                  "the section \"Current Running Processes\" of the snapshot before the install holds " +
                      std::to_string(CEventLogReader::kSectionLineLimit + 1 + own.first) + " lines, " +
                      std::to_string(CEventLogReader::kSectionLineLimit + 1 + own.second) +
                      " bytes: more than the recorder writes, so it is not compared",
                  LookAlikeNote(NonBlankLines(log).size(),
                                "before the install: the one at the head of the log is compared")}));
}

TEST(EventLogReader, ASectionOfMoreBytesThanAnyTheRecorderWritesIsNotComparedAndHeldNoLonger)
{
    std::string log = StartSnapshot("E1", "Install", Before());
    const std::string row(100000, 'p');
    std::string rows;
    for (int i = 0; i < 50; ++i)
        rows += row + "\n";
    log.insert(log.find("\n4) Services"), "\n" + rows);
    const CEventLogReader reader = Read(log);
    EXPECT_TRUE(reader.before.complete);
    EXPECT_FALSE(reader.before[SnapshotPart::Processes].complete);
    EXPECT_TRUE(reader.before[SnapshotPart::Processes].items.empty());
    EXPECT_TRUE(reader.before[SnapshotPart::Services].complete);
    ASSERT_EQ(reader.notes.size(), 1u);
    EXPECT_NE(reader.notes[0].find("holds 5"), std::string::npos) << reader.notes[0];
}

TEST(EventLogReader, AMessageIsKeptToItsLimitAndWhatWasCutIsCounted)
{
    const std::string longer(CEventLogReader::kMessageTextLimit + 10, 'm');
    const std::string longest(CLineSplitter::kDefaultLineLimit + 300000, 'n');
    const CEventLogReader reader = Read("short\n" + longer + "\n" + longest + "\nlast\n");
    ASSERT_EQ(reader.messages.size(), 4u);
    EXPECT_EQ(reader.messages[0], "short");
    EXPECT_EQ(reader.messages[1], longer.substr(0, CEventLogReader::kMessageTextLimit));
    EXPECT_EQ(reader.messages[2], longest.substr(0, CEventLogReader::kMessageTextLimit));
    EXPECT_EQ(reader.messages[3], "last");
    ASSERT_EQ(reader.messagesCut.size(), 2u);
    EXPECT_EQ(reader.messagesCut[0].index, 1u);
    EXPECT_EQ(reader.messagesCut[0].bytesCut, 10u);
    EXPECT_EQ(reader.messagesCut[1].index, 2u);
    EXPECT_EQ(reader.messagesCut[1].bytesCut, longest.size() - CEventLogReader::kMessageTextLimit);
}

TEST(EventLogReader, ALongLineAfterHeldBackLinesLetsThemGoAsTheyRead)
{
    const std::string longest(CLineSplitter::kDefaultLineLimit + 1, 'n');
    const std::string rule(94, '*');
    const CEventLogReader reader = Read(rule + "\n" + longest + "\n");
    ASSERT_EQ(reader.messages.size(), 2u);
    EXPECT_EQ(reader.messages[0], rule);
    EXPECT_EQ(reader.messagesCut.size(), 1u);
}

TEST(EventLogReader, SectionsThatComeAgainAreReadOnceAndShared)
{
    SnapshotContent after = Before();
    after.software.push_back({"TAQ Inc.", "ZOR Server", "9.0.0"});
    const auto memo = std::make_shared<CSectionMemo>();
    const CEventLogReader first = Read(WholeLog(Before(), after), "E1", memo);
    const CEventLogReader second = Read(WholeLog(after, after), "E1", memo);

    const std::size_t software = static_cast<std::size_t>(SnapshotPart::Software);
    const std::size_t services = static_cast<std::size_t>(SnapshotPart::Services);
    EXPECT_TRUE(first.before.Shares(first.after, services));
    EXPECT_FALSE(first.before.Shares(first.after, software));
    EXPECT_TRUE(first.after.Shares(second.before, software));
    EXPECT_TRUE(second.before.Shares(second.after, software));
    EXPECT_EQ(second.before[SnapshotPart::Software].items.at("ZOR Server").value, "9.0.0");
    EXPECT_EQ(second.before[SnapshotPart::Software].items.size(), 2u);
}

TEST(EventLogReader, ASectionCutOffIsNotTakenForTheSameTextReadWhole)
{
    const auto memo = std::make_shared<CSectionMemo>();
    const CEventLogReader whole = Read(WholeLog(Before(), Before()), "E1", memo);
    std::string cut = StartHead("E1", "VM", "Microsoft Windows XP Professional") + StartSnapshot("E1", "Install", Before());
    cut.resize(cut.find("5) ZOR"));
    const CEventLogReader cutOff = Read(cut, "E1", memo);

    EXPECT_TRUE(whole.before[SnapshotPart::Services].complete);
    EXPECT_FALSE(cutOff.before[SnapshotPart::Services].complete);
    EXPECT_FALSE(cutOff.before.Shares(whole.before, static_cast<std::size_t>(SnapshotPart::Services)));
    EXPECT_TRUE(cutOff.before.Shares(whole.before, static_cast<std::size_t>(SnapshotPart::Users)));
}
