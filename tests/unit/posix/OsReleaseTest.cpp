// The distribution's name from an os-release file: quoted and bare values,
// escapes, comments, the default of the format, and files that can't be read.
#include "platform/posix/OsRelease.h"

#include <gtest/gtest.h>

#include <string>

#include "support/TestFiles.h"
#include "support/TestMachine.h"

namespace {

using platform::posix::PrettyNameOf;
using platform::posix::ReadPrettyName;

TEST(OsReleaseText, DoubleQuotedValueLosesItsQuotes)
{
    EXPECT_EQ(PrettyNameOf("NAME=\"Debian GNU/Linux\"\n"
                           "PRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\n"
                           "VERSION_ID=\"12\"\n"),
              "Debian GNU/Linux 12 (bookworm)");
}

TEST(OsReleaseText, SingleQuotedValueKeepsItsBackslashes)
{
    EXPECT_EQ(PrettyNameOf("PRETTY_NAME='Some \\\"OS\\\" 1'\n"), "Some \\\"OS\\\" 1");
}

TEST(OsReleaseText, EscapesInsideDoubleQuotesAreUndone)
{
    EXPECT_EQ(PrettyNameOf("PRETTY_NAME=\"The \\\"Best\\\" OS \\$5 \\\\ \\`x\\` \\n\"\n"),
              "The \"Best\" OS $5 \\ `x` \\n");
}

TEST(OsReleaseText, BareValueIsTakenAsItStands)
{
    EXPECT_EQ(PrettyNameOf("ID=fedora\nPRETTY_NAME=Fedora\n"), "Fedora");
}

TEST(OsReleaseText, CarriageReturnsAndBlanksAroundALineAreDropped)
{
    EXPECT_EQ(PrettyNameOf("  PRETTY_NAME=\"Alpine Linux v3.19\"  \r\n"), "Alpine Linux v3.19");
}

TEST(OsReleaseText, CommentsAndOtherKeysAreNotTheName)
{
    EXPECT_EQ(PrettyNameOf("# PRETTY_NAME=\"commented\"\n"
                           "XPRETTY_NAME=\"other key\"\n"
                           "PRETTY_NAME=\"Ubuntu 22.04.4 LTS\"\n"),
              "Ubuntu 22.04.4 LTS");
}

TEST(OsReleaseText, LastAssignmentCounts)
{
    EXPECT_EQ(PrettyNameOf("PRETTY_NAME=\"First\"\nPRETTY_NAME=\"Second\"\n"), "Second");
}

TEST(OsReleaseText, QuoteLeftOpenIsPassedOver)
{
    EXPECT_EQ(PrettyNameOf("PRETTY_NAME=\"Good\"\nPRETTY_NAME=\"Open\n"), "Good");
}

TEST(OsReleaseText, EmptyQuotedValueIsAnEmptyName)
{
    EXPECT_EQ(PrettyNameOf("PRETTY_NAME=\"\"\n"), "");
}

TEST(OsReleaseText, TextWithoutThePrettyNameGivesTheDefaultLinux)
{
    EXPECT_EQ(PrettyNameOf("NAME=\"Something\"\nID=something\n"), "Linux");
    EXPECT_EQ(PrettyNameOf(""), "Linux");
}

TEST(OsReleaseText, LastLineWithoutLineEndIsRead)
{
    EXPECT_EQ(PrettyNameOf("ID=arch\nPRETTY_NAME=\"Arch Linux\""), "Arch Linux");
}

class OsReleaseFile : public ::testing::Test {
protected:
    std::string PathOf(const std::string& name) const { return machine.Root() + "/" + name; }

    TestMachine machine;
};

TEST_F(OsReleaseFile, MissingFileGivesNoName)
{
    EXPECT_EQ(ReadPrettyName({PathOf("missing-os-release")}), "");
}

TEST_F(OsReleaseFile, NoPathGivesNoName)
{
    EXPECT_EQ(ReadPrettyName({}), "");
}

TEST_F(OsReleaseFile, FirstFileThatCanBeReadCounts)
{
    WriteWholeFile(PathOf("second"), "PRETTY_NAME=\"From the second\"\n");
    WriteWholeFile(PathOf("third"), "PRETTY_NAME=\"From the third\"\n");
    EXPECT_EQ(ReadPrettyName({PathOf("missing"), PathOf("second"), PathOf("third")}),
              "From the second");
}

TEST_F(OsReleaseFile, FileWithoutThePrettyNameGivesTheDefault)
{
    WriteWholeFile(PathOf("os-release"), "NAME=\"Something\"\n");
    EXPECT_EQ(ReadPrettyName({PathOf("os-release")}), "Linux");
}

TEST_F(OsReleaseFile, FolderIsNoFile)
{
    MakeFolders(PathOf("folder"));
    WriteWholeFile(PathOf("file"), "PRETTY_NAME=\"Behind the folder\"\n");
    EXPECT_EQ(ReadPrettyName({PathOf("folder"), PathOf("file")}), "Behind the folder");
}

}  // namespace
