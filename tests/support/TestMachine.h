// A private machine for one test: the scripted machine's application data
// folder is a fresh temporary folder, removed again at the end of the test.
#pragma once

#include <string>

#include "platform/scripted/ScriptedMachine.h"

class TestMachine {
public:
    TestMachine();
    ~TestMachine();
    TestMachine(const TestMachine&) = delete;
    TestMachine& operator=(const TestMachine&) = delete;

    // The temporary folder, in the system's form (backslashes on Windows).
    const std::string& Root() const { return root_; }
    // The machine-wide application data folder: <root>\AppData, made by the constructor.
    std::string AppData() const;
    // <AppData>\TAQ\ZORHistory, as the system builds it.
    std::string HistoryFolder() const;
    // Makes <AppData>\TAQ\ZORHistory and returns it.
    std::string MakeHistoryFolder() const;

    platform::scripted::Machine& Machine();

private:
    std::string root_;
};
