#include <gtest/gtest.h>

#include <string>

#include "history/HistoryPaths.h"
#include "support/TestMachine.h"

TEST(HistoryLocation, WithoutShellFoldersEveryPathLiesBelowTheFixedFolder)
{
    TestMachine machine;
    machine.Machine().hasShellFolders = false;

    EXPECT_EQ("", GetSpecialFolder(0x23));
    EXPECT_EQ("C:\\Documents and Settings\\All Users\\Application Data", GetCommonAppDataFolder());
    EXPECT_EQ("C:\\Documents and Settings\\All Users\\Application Data\\TAQ\\ZORHistory", GetHistoryFolder());
    EXPECT_EQ("C:\\Documents and Settings\\All Users\\Application Data\\TAQ\\ZORHistory\\History.ini",
              GetHistoryIniPath());
}

TEST(HistoryLocation, AFailedLookUpFallsBackToTheFixedFolder)
{
    TestMachine machine;
    machine.Machine().commonAppData = "";

    EXPECT_EQ("C:\\Documents and Settings\\All Users\\Application Data", GetCommonAppDataFolder());
}

TEST(HistoryLocation, StoreLiesBelowTheMachineWideApplicationDataFolder)
{
    TestMachine machine;
    machine.Machine().commonAppData = "D:\\Shared Data";

    EXPECT_EQ("D:\\Shared Data", GetSpecialFolder(0x23));
    EXPECT_EQ("D:\\Shared Data", GetCommonAppDataFolder());
    EXPECT_EQ("D:\\Shared Data\\TAQ\\ZORHistory", GetHistoryFolder());
    EXPECT_EQ("D:\\Shared Data\\TAQ\\ZORHistory\\History.ini", GetHistoryIniPath());
}

TEST(HistoryLocation, OtherSpecialFoldersAreUnknownToTheMachine)
{
    TestMachine machine;
    EXPECT_EQ("", GetSpecialFolder(0x1a));
}

TEST(HistoryLocation, EveryCallAsksTheMachineAgain)
{
    TestMachine machine;
    machine.Machine().commonAppData = "E:\\First";
    const std::string first = GetHistoryIniPath();
    machine.Machine().commonAppData = "F:\\Second";
    const std::string second = GetHistoryIniPath();
    machine.Machine().hasShellFolders = false;
    const std::string third = GetHistoryFolder();

    EXPECT_EQ("E:\\First\\TAQ\\ZORHistory\\History.ini", first);
    EXPECT_EQ("F:\\Second\\TAQ\\ZORHistory\\History.ini", second);
    EXPECT_EQ("C:\\Documents and Settings\\All Users\\Application Data\\TAQ\\ZORHistory", third);
}

TEST(HistoryLocation, AFolderLongerThanTheBufferOf256BytesIsCutTo255Characters)
{
    TestMachine machine;
    machine.Machine().commonAppData = "D:\\" + std::string(300, 'a');

    const std::string first255 = "D:\\" + std::string(252, 'a');
    EXPECT_EQ(first255, GetSpecialFolder(0x23));
    EXPECT_EQ(first255, GetCommonAppDataFolder());
    EXPECT_EQ(first255 + "\\TAQ\\ZORHistory", GetHistoryFolder());
}

TEST(HistoryLocation, AFolderOf255CharactersIsKeptWhole)
{
    TestMachine machine;
    const std::string whole = "D:\\" + std::string(252, 'b');
    machine.Machine().commonAppData = whole;
    EXPECT_EQ(whole, GetCommonAppDataFolder());

    machine.Machine().commonAppData = whole + "c";
    EXPECT_EQ(whole, GetCommonAppDataFolder());
}
