// The store's own security on Windows: its two top folders carry a protected
// DACL (SYSTEM and Administrators full control, Users read) that what is made
// inside inherits, and their owner is one whom the store may trust.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "platform/FileSystem.h"
#include "platform/StoreSecurity.h"
#include "platform/win32/StoreOwner.h"
#include "support/TestFiles.h"
#include "support/TestMachine.h"
#include "support/WineHost.h"

namespace {

const char* const kSystemFull = "(A;OICI;GA;;;SY)";
const char* const kAdministratorsFull = "(A;OICI;GA;;;BA)";
const char* const kUsersRead = "(A;OICI;GR;;;BU)";

// Why the DACL tests are skipped under Wine.
const char* const kWineKeepsNoDacl =
    "Wine keeps no DACL of a folder: it maps the DACL onto the Unix mode and reads back one made "
    "from the mode (SYSTEM, the owner, Everyone), neither protected nor with the given entries";

bool Holds(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

TEST(StoreSecurity, TheStoresFoldersCarryAProtectedDaclOfTheirOwn)
{
    if (RunsUnderWine())
        GTEST_SKIP() << kWineKeepsNoDacl;
    TestMachine machine;
    const std::string folder = machine.AppData() + "\\TAQ";
    ASSERT_TRUE(platform::CreateStoreFolder(folder));
    const platform::PathSecurity security = platform::ReadPathSecurity(folder);
    EXPECT_EQ(security.access.rfind("D:P", 0), 0u) << security.access;
    EXPECT_TRUE(Holds(security.access, kSystemFull)) << security.access;
    EXPECT_TRUE(Holds(security.access, kAdministratorsFull)) << security.access;
    EXPECT_TRUE(Holds(security.access, kUsersRead)) << security.access;
    EXPECT_FALSE(Holds(security.access, ";;;WD)")) << "no entry for everyone: " << security.access;
    EXPECT_FALSE(security.owner.empty());
    EXPECT_TRUE(platform::IsTrustedStoreFolder(folder)) << security.owner;
}

TEST(StoreSecurity, WhatIsMadeInsideInheritsTheStoresDacl)
{
    if (RunsUnderWine())
        GTEST_SKIP() << kWineKeepsNoDacl;
    TestMachine machine;
    const std::string folder = machine.AppData() + "\\TAQ";
    ASSERT_TRUE(platform::CreateStoreFolder(folder));
    ASSERT_TRUE(platform::CreateStoreFolder(folder + "\\ZORHistory"));
    WriteWholeFile(folder + "\\ZORHistory\\History.ini", "[History]\r\nCount=0\r\n");
    const std::string access = platform::ReadPathSecurity(folder + "\\ZORHistory\\History.ini").access;
    EXPECT_TRUE(Holds(access, ";;;SY)")) << access;
    EXPECT_TRUE(Holds(access, ";;;BA)")) << access;
    EXPECT_TRUE(Holds(access, ";;;BU)")) << access;
}

TEST(StoreSecurity, AStoreThatOlderCodeMadeWithDefaultSecurityGetsTheStoresDacl)
{
    if (RunsUnderWine())
        GTEST_SKIP() << kWineKeepsNoDacl;
    TestMachine machine;
    const std::string folder = machine.AppData() + "\\TAQ";
    ASSERT_TRUE(platform::CreateFolder(folder));
    ASSERT_TRUE(platform::CreateFolder(folder + "\\ZORHistory"));
    ASSERT_NE(platform::ReadPathSecurity(folder).access.rfind("D:P", 0), 0u);

    platform::SecureExistingStore(folder + "\\ZORHistory");

    for (const std::string& path : {folder, folder + "\\ZORHistory"}) {
        const std::string access = platform::ReadPathSecurity(path).access;
        EXPECT_EQ(access.rfind("D:P", 0), 0u) << path << ": " << access;
        EXPECT_TRUE(Holds(access, kUsersRead)) << path << ": " << access;
    }
}

TEST(StoreSecurity, AStoreFolderThatTheCallerMadeIsOwnedByATrustedOwner)
{
    TestMachine machine;
    const std::string folder = machine.AppData() + "\\TAQ";
    ASSERT_TRUE(platform::CreateStoreFolder(folder));
    const std::string owner = platform::ReadPathSecurity(folder).owner;
    EXPECT_EQ(owner.rfind("S-1-5-", 0), 0u) << owner;
    EXPECT_TRUE(platform::IsTrustedStoreFolder(folder)) << owner;
}

TEST(StoreSecurity, APathThatDoesNotExistHasNoOwnerAndIsNotTrusted)
{
    TestMachine machine;
    const std::string missing = machine.AppData() + "\\missing";
    EXPECT_TRUE(platform::ReadPathSecurity(missing).owner.empty());
    EXPECT_FALSE(platform::IsTrustedStoreFolder(missing));
}

TEST(StoreSecurity, NothingIsWrittenCopiedOrMovedThroughALinkInTheStore)
{
    TestMachine machine;
    const std::string store = machine.MakeHistoryFolder();
    const std::string outside = machine.Root() + "\\outside";
    MakeFolders(outside);
    std::error_code failed;
    std::filesystem::create_directory_symlink(outside, store + "\\E1", failed);
    if (failed || platform::GetFileAttributes(store + "\\E1") == platform::kInvalidFileAttributes)
        GTEST_SKIP() << "no folder link could be made here: " << failed.message();
    const std::string source = machine.Root() + "\\setup.log";
    WriteWholeFile(source, "installer log");

    EXPECT_FALSE(platform::CopyFileNoOverwrite(source, store + "\\E1\\setup.log"));
    std::filebuf log;
    EXPECT_FALSE(platform::OpenFileBuffer(log, store + "\\E1\\ZORInstallEvent.Log",
                                          std::ios_base::out));
    EXPECT_FALSE(platform::CreateFolder(store + "\\E1\\inner"));
    MakeFolders(store + "\\C1");
    EXPECT_FALSE(platform::MovePath(store + "\\C1", store + "\\E1\\C1"));
    EXPECT_TRUE(FolderNames(outside).empty());
}

}  // namespace
