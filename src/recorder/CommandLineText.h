// The recorder's entry reached with one text instead of an argument list, as a
// Windows Installer custom action gets its data.
#pragma once

#include <string>
#include <vector>

// The arguments of `text` by the rules of the Windows command line, as the C
// run-time gives them to a program's main: blanks and tabs separate, double
// quotes group (a pair inside quotes stands for one quote), and backslashes
// are plain unless they come before a double quote, where each pair gives one
// backslash and an odd one makes the quote plain.
std::vector<std::string> SplitCommandLine(const std::string& text);

// CHistoryStore::Record on a fresh store with the arguments of `text`, behind
// `callerName` as element 0. The same results as Record.
int RecordCommandLine(const std::string& callerName, const std::string& text);
