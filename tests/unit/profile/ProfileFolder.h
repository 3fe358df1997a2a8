// A private folder for the profile tests, and the file text that the profile
// calls write: every line ended by "\r\n" on every platform.
#pragma once

#include <initializer_list>
#include <string>

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

// The lines as the profile calls write them.
inline std::string ProfileText(std::initializer_list<std::string> lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text;
}
