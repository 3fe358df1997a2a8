// A private machine for an archive test, with helpers to lay down files under
// its temporary folder and to read back what an archive holds.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/TestFiles.h"
#include "support/TestMachine.h"
#include "unit/zip/ZipTestReader.h"
#include "unit/zip/ZipTestSupport.h"
#include "zip/CZipper.h"
#include "zip/PathParts.h"

class ZipperFixture : public ::testing::Test {
protected:
    // <temporary folder>\<relative>, in the system's form.
    std::string At(const std::string& relative) const { return machine.Root() + "\\" + relative; }

    // Writes a file below the temporary folder, making its folders first.
    std::string PutFile(const std::string& relative, const std::string& content) const
    {
        const std::string path = At(relative);
        const PathParts parts = SplitPath(path.c_str());
        MakeFolders(parts.drive + parts.directory);
        WriteWholeFile(path, content);
        return path;
    }

    std::string PutFolder(const std::string& relative) const
    {
        MakeFolders(At(relative));
        return At(relative);
    }

    // Keeps the archive for the independent readers and reads its directory.
    ZipTestArchive Kept(const std::string& zipPath, const std::string& suffix = "") const
    {
        KeepThisTestsArchive(zipPath, suffix);
        ZipTestArchive archive = ReadZipDirectory(zipPath);
        EXPECT_TRUE(archive.valid) << zipPath;
        return archive;
    }

    TestMachine machine;
};

// An open archive x.zip in the temporary folder, whose root is <temporary folder>\store.
class OpenArchiveFixture : public ZipperFixture {
protected:
    void SetUp() override
    {
        PutFolder("store");
        zipPath = At("x.zip");
        ASSERT_TRUE(zipper.Open(zipPath.c_str(), At("store").c_str(), false));
    }

    ZipTestArchive CloseAndRead()
    {
        EXPECT_TRUE(zipper.Close());
        return Kept(zipPath);
    }

    std::string zipPath;
    CZipper zipper{nullptr, nullptr, false};
};
