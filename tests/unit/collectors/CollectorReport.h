// What a collector writes to the event log, for the tests of the collectors:
// each test has its own scripted machine, and the log stream is opened on a
// file of that machine's temporary folder.
#pragma once

#include <ios>
#include <string>

#include <gtest/gtest.h>

#include "platform/scripted/ScriptedMachine.h"
#include "recorder/CLogger.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"

// The rules of the reports, as they stand in the log.
const std::string kComputerRule = "=============================================";
const std::string kUsersRule =
    "===================================================================================";
const std::string kGroupRule = "-----------------------------------";
const std::string kUserRule =
    "--------------------------------------------------------------------------";

class CollectorTest : public ::testing::Test {
protected:
    CollectorTest()
    {
        CLogger::Instance().Close();
        CLogger::Instance().clear();
    }
    ~CollectorTest() override { CLogger::Instance().Close(); }

    platform::scripted::Machine& Machine() { return machine.Machine(); }

    // The version that GetVersionExA reports.
    void SetVersion(std::uint32_t platformId, std::uint32_t major, std::uint32_t minor,
                    std::uint8_t productType, std::uint16_t suiteMask,
                    const std::string& servicePack = std::string())
    {
        platform::SystemVersion& version = Machine().version;
        version.platformId = platformId;
        version.majorVersion = major;
        version.minorVersion = minor;
        version.buildNumber = 1000;
        version.productType = productType;
        version.suiteMask = suiteMask;
        version.servicePack = servicePack;
    }

    void SetProcessors(std::uint16_t architecture, std::uint16_t level, std::uint32_t type,
                       std::uint32_t count)
    {
        platform::ProcessorInfo& processor = Machine().computer.processor;
        processor.architecture = architecture;
        processor.level = level;
        processor.processorType = type;
        processor.processorCount = count;
    }

    // Opens the log, runs `write`, closes the log and gives back the file.
    template <typename Write>
    std::string Logged(Write write)
    {
        const std::string path = machine.Root() + "\\collector.log";
        CLogger::Instance().Open(path, static_cast<int>(std::ios_base::out));
        write();
        CLogger::Instance().Close();
        return ReadWholeFile(path);
    }

    // Collects on a fresh collector and gives back its report.
    template <typename Collector>
    std::string Report()
    {
        Collector collector;
        collector.Collect();
        return Logged([&collector] { collector.Write(); });
    }

    TestMachine machine;
};
