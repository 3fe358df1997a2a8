// A private folder for the profile tests, a History.ini in it, and the file text that the profile
// calls write: every line ended by "\r\n" on every platform.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "history/CIniFile.h"

#include "support/TestFiles.h"
#include "support/TestMachine.h"

class ProfileFolder {
public:
    ProfileFolder() : folder_(machine_.Root() + "\\profile") { MakeFolders(folder_); }

    const std::string& Folder() const { return folder_; }
    std::string PathOf(const std::string& name) const { return folder_ + "\\" + name; }

private:
    TestMachine machine_;
    std::string folder_;
};

// A History.ini of its own for each test, and a CIniFile on it.
class HistoryIniTest : public testing::Test {
protected:
    ProfileFolder folder;
    std::string path = folder.PathOf("History.ini");
    CIniFile ini{path};
};

// The lines as the profile calls write them.
inline std::string ProfileText(std::initializer_list<std::string> lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text;
}
