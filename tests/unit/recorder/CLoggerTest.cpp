// The event log's stream: opening, closing, and the state that a failed open
// leaves for the rest of the process.
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "RecorderCalls.h"
#include "platform/FileSystem.h"
#include "recorder/CLogger.h"
#include "support/TestFiles.h"

namespace {

class Logger : public RecorderTest {
protected:
    std::string FileNamed(const std::string& name) const { return machine.Root() + "\\" + name; }
};

const int kOut = static_cast<int>(std::ios_base::out);
const int kAppend = static_cast<int>(std::ios_base::app);

TEST_F(Logger, InstanceIsOneObjectForTheProcess)
{
    EXPECT_EQ(&CLogger::Instance(), &CLogger::Instance());
}

TEST_F(Logger, OpenForOutputEmptiesExistingFile)
{
    WriteWholeFile(FileNamed("a.log"), "earlier\n");
    CLogger& log = CLogger::Instance();
    log.Open(FileNamed("a.log"), kOut);
    log << "fresh" << std::endl;
    log.Close();
    EXPECT_EQ(ReadWholeFile(FileNamed("a.log")), TextLines({"fresh"}));
}

TEST_F(Logger, OpenForAppendingWritesAtEnd)
{
    WriteWholeFile(FileNamed("a.log"), TextLines({"earlier"}));
    CLogger& log = CLogger::Instance();
    log.Open(FileNamed("a.log"), kAppend);
    log << "later" << std::endl;
    log.Close();
    EXPECT_EQ(ReadWholeFile(FileNamed("a.log")), TextLines({"earlier", "later"}));
}

TEST_F(Logger, OpenForAppendingCreatesMissingFile)
{
    CLogger& log = CLogger::Instance();
    log.Open(FileNamed("new.log"), kAppend);
    log << "first" << std::endl;
    log.Close();
    EXPECT_EQ(ReadWholeFile(FileNamed("new.log")), TextLines({"first"}));
}

TEST_F(Logger, EachLineIsInFileAsSoonAsItIsEnded)
{
    CLogger& log = CLogger::Instance();
    log.Open(FileNamed("a.log"), kOut);
    log << "one" << std::endl;
    EXPECT_EQ(ReadWholeFile(FileNamed("a.log")), TextLines({"one"}));
    log.Close();
}

TEST_F(Logger, OpenClosesThePreviousFile)
{
    CLogger& log = CLogger::Instance();
    log.Open(FileNamed("a.log"), kOut);
    log << "in a";
    log.Open(FileNamed("b.log"), kOut);
    log << "in b" << std::endl;
    log.Close();
    EXPECT_EQ(ReadWholeFile(FileNamed("a.log")), "in a");
    EXPECT_EQ(ReadWholeFile(FileNamed("b.log")), TextLines({"in b"}));
}

TEST_F(Logger, CloseWithoutOpenFileDoesNothing)
{
    CLogger& log = CLogger::Instance();
    log.Close();
    log.Close();
    EXPECT_TRUE(log.good());
}

TEST_F(Logger, FailedOpenSilencesEveryLaterOpen)
{
    CLogger& log = CLogger::Instance();
    log.Open(FileNamed("missing folder\\a.log"), kOut);
    EXPECT_TRUE(log.fail());
    log << "lost" << std::endl;
    log.Open(FileNamed("good.log"), kOut);
    EXPECT_TRUE(log.is_open());
    log << "also lost" << std::endl;
    log.Close();
    EXPECT_TRUE(PathExists(FileNamed("good.log")));
    EXPECT_EQ(ReadWholeFile(FileNamed("good.log")), "");
}

TEST_F(Logger, FailedEventLogSilencesLaterCallsOfTheProcess)
{
    Record({"-logmessage", "never started", "-message", "lost"});
    Record({"-start", "x"});
    EXPECT_TRUE(PathExists(EventLog("x")));
    EXPECT_EQ(ReadWholeFile(EventLog("x")), "");
}

TEST_F(Logger, OpenLogCanBeReadAndWrittenByOthers)
{
    CLogger& log = CLogger::Instance();
    log.Open(FileNamed("shared.log"), kOut);
    log << "by the logger" << std::endl;
    std::ifstream reader(platform::SystemPath(FileNamed("shared.log")));
    std::string line;
    EXPECT_TRUE(std::getline(reader, line));
    EXPECT_EQ(line, "by the logger");
    std::ofstream writer(platform::SystemPath(FileNamed("shared.log")), std::ios_base::app);
    EXPECT_TRUE(writer.is_open());
    writer << "by another writer" << std::endl;
    writer.close();
    log.Close();
    EXPECT_EQ(ReadWholeFile(FileNamed("shared.log")),
              TextLines({"by the logger", "by another writer"}));
}

}  // namespace
