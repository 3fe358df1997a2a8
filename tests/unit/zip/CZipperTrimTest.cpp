#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "zip/CZipper.h"

namespace {

std::string TrimmedEnd(const std::string& text)
{
    char buffer[CZipper::kPathBufferSize];
    std::strcpy(buffer, text.c_str());
    CZipper::TrimPathEnd(buffer);
    return buffer;
}

std::string TrimmedName(const std::string& text)
{
    char buffer[CZipper::kPathBufferSize];
    std::strcpy(buffer, text.c_str());
    CZipper::TrimEntryName(buffer);
    return buffer;
}

}  // namespace

TEST(CZipperTrim, PathEndLosesBlanksAndThenTheBackslashesBeforeThem)
{
    EXPECT_EQ(TrimmedEnd("a\\ "), "a");
    EXPECT_EQ(TrimmedEnd("C:\\x\\\\\\"), "C:\\x");
    EXPECT_EQ(TrimmedEnd("a\t \r\n"), "a");
}

TEST(CZipperTrim, PathEndTrimsInOnePassSoABlankAheadOfABackslashStays)
{
    EXPECT_EQ(TrimmedEnd("a \\"), "a ");
    EXPECT_EQ(TrimmedEnd("a\\ \\"), "a\\ ");
}

TEST(CZipperTrim, PathEndLeavesForwardSlashesAndInnerBlanks)
{
    EXPECT_EQ(TrimmedEnd("a b/"), "a b/");
}

TEST(CZipperTrim, PathEndOfOnlyBlanksAndBackslashesIsEmpty)
{
    EXPECT_EQ(TrimmedEnd("  "), "");
    EXPECT_EQ(TrimmedEnd("\\\\ "), "");
    EXPECT_EQ(TrimmedEnd(""), "");
}

TEST(CZipperTrim, EntryNameLosesBlanksAndBackslashesAtBothEnds)
{
    EXPECT_EQ(TrimmedName(" \\\\sub\\f.txt\\ "), "sub\\f.txt");
    EXPECT_EQ(TrimmedName("sub\\f.txt \\"), "sub\\f.txt ");
    EXPECT_EQ(TrimmedName("\\f.txt"), "f.txt");
}

TEST(CZipperTrim, EntryNameFrontSkipsBlanksThenBackslashesOnly)
{
    EXPECT_EQ(TrimmedName("\\ x"), " x");
    EXPECT_EQ(TrimmedName(" \\x"), "x");
}

TEST(CZipperTrim, EntryNameFrontLosesForwardSlashesAsItLosesBackslashes)
{
    EXPECT_EQ(TrimmedName("/sub/f.txt"), "sub/f.txt");
    EXPECT_EQ(TrimmedName(" /\\f.txt"), "f.txt");
}

TEST(CZipperTrim, EntryNameKeepsInnerBackslashes)
{
    EXPECT_EQ(TrimmedName("a\\b\\c.txt"), "a\\b\\c.txt");
}

TEST(CZipperTrim, EmptyEntryNameStaysEmpty)
{
    EXPECT_EQ(TrimmedName(""), "");
    EXPECT_EQ(TrimmedName(" \\ "), "");
}
