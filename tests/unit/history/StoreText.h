// History.ini as a test lays it down by hand and reads it back, line by line.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "support/TestFiles.h"

using Lines = std::vector<std::string>;

// The lines in the private-profile file format, each ended by "\r\n".
inline std::string IniText(std::initializer_list<std::string> lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text;
}

// The lines of a file, whatever its line ends; no line for the end of the file.
inline Lines FileLines(const std::string& path)
{
    const std::string text = ReadWholeFile(path);
    Lines lines;
    std::string line;
    for (char c : text) {
        if (c == '\n') {
            if (!line.empty() && line.back() == '\r')
                line.pop_back();
            lines.push_back(line);
            line.clear();
        } else {
            line += c;
        }
    }
    if (!line.empty())
        lines.push_back(line);
    return lines;
}
