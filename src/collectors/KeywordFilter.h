// The selection test that the process, product and service reports apply to
// each entry right before its row, over their keyword tables.
#pragma once

#include <string>

// The keyword tables: static, built at program start, never changed.
extern const std::string ProcessKeywords[3];
extern const std::string ProductKeywords[4];
extern const std::string ServiceKeywords[2];

// How a table's first keyword switches the test off: it must equal "ALL", or
// it must only begin with it.
enum class AllSwitch { WholeWord, Prefix };

// True when the first of the `count` keywords is the switch "ALL", or when one
// of them occurs in `text` as a substring, compared byte for byte.
bool MatchesKeywords(const std::string& text, const std::string* keywords, int count,
                     AllSwitch allSwitch);
