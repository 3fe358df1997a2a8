// A test of one report on a scripted machine, with the event log's stream
// opened on a file of the test machine. The stream's format flags and fill are
// put back afterwards, so that every test starts as a fresh process does:
// the left-adjust bit that the rows turn on stays on for the rest of a run.
#pragma once

#include <ios>
#include <string>

#include <gtest/gtest.h>

#include "recorder/CLogger.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

class LoggedReportTest : public ::testing::Test {
protected:
    LoggedReportTest()
    {
        CLogger& log = CLogger::Instance();
        log.Close();
        log.clear();
        savedFlags_ = log.flags();
        savedFill_ = log.fill();
        log.Open(LogPath(), static_cast<int>(std::ios_base::out));
    }

    ~LoggedReportTest() override
    {
        CLogger& log = CLogger::Instance();
        log.Close();
        log.clear();
        log.flags(savedFlags_);
        log.fill(savedFill_);
    }

    std::string LogPath() const { return machine.Root() + "\\report.log"; }

    // Everything written so far, with the stream closed.
    std::string Logged()
    {
        CLogger::Instance().Close();
        return ReadWholeFile(LogPath());
    }

    TestMachine machine;

private:
    std::ios_base::fmtflags savedFlags_;
    char savedFill_;
};
