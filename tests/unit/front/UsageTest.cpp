#include <gtest/gtest.h>

#include "front/Usage.h"
#include "unit/front/ConsoleCapture.h"

TEST(Usage, PrintsTheFourLinesOfTheUsageText)
{
    ConsoleCapture console;
    PrintUsage();
    EXPECT_EQ(console.Text(),
              "Get and Compress installation history log into a zip file: \n"
              "ZORGetInstallLog -f [ZipFileName]\n"
              " -- ZipFileName : Full Qualified File Name\n"
              " e.g. ZORGetInstallLog -f d:\\HistoryLog.zip\n");
}
