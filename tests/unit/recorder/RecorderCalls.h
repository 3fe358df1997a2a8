// Calls of the recorder's entry as an installer makes them, and readers of what
// the calls leave in the store of a test machine.
#pragma once

#include <initializer_list>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/TestMachine.h"

// An argument list as a program gets it: element 0 is the caller's name, and a
// null pointer stands behind the last element.
class ArgumentList {
public:
    explicit ArgumentList(std::initializer_list<std::string> options);
    int& Count() { return count_; }
    char** Elements() { return pointers_.data(); }

private:
    std::vector<std::string> texts_;
    std::vector<char*> pointers_;
    int count_;
};

// One call of CHistoryStore::Record on a fresh store object.
int Record(std::initializer_list<std::string> options);

// Everything written to std::cout while the object lives.
class CapturedOutput {
public:
    CapturedOutput();
    ~CapturedOutput();
    std::string Text() const { return captured_.str(); }

private:
    std::ostringstream captured_;
    std::streambuf* previous_;
};

// Puts the event log stream's format back as a fresh process has it: the
// left-adjust bit that reports turn on stays on for the rest of a process.
void ResetLoggerFormat();

// A test on its own machine, with the process-wide event log closed, its
// state good and its format as in a fresh process.
class RecorderTest : public ::testing::Test {
protected:
    RecorderTest();

    std::string HistoryIni() const;
    std::string EventFolder(const std::string& eventID) const;
    std::string EventLog(const std::string& eventID) const;
    int StoredCount() const;
    std::vector<std::string> SectionNames() const;

    TestMachine machine;
};

// The "Key=Value" lines of one section of an INI file, in file order, without
// line ends and blank lines.
std::vector<std::string> SectionLines(const std::string& iniPath, const std::string& section);
// The key names of those lines.
std::vector<std::string> SectionKeys(const std::string& iniPath, const std::string& section);

// The lines of a text file written in text mode; an unfinished last line is
// kept as it is.
std::vector<std::string> FileLines(const std::string& path);

// Compares lines; an expected line may hold "<time>" where a time stamp of the
// form "YYYYMMDD HH:MM:SS" stands.
void ExpectLinesMatch(const std::vector<std::string>& actual,
                      const std::vector<std::string>& expected);

// The lines from `first` up to and not including `first` + `count`.
std::vector<std::string> LinesAt(const std::vector<std::string>& lines, std::size_t first,
                                 std::size_t count);
// The last `count` lines.
std::vector<std::string> LastLines(const std::vector<std::string>& lines, std::size_t count);
