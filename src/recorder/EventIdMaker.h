// A unique, readable EventID for an installer that has none of its own: the
// product's short name, the local date and time to the second and four random
// hex digits, e.g. ZORServer-20261125-130512-3fa9. An EventID names a folder
// of the history and a section of History.ini, and installers paste it
// unquoted into a command line, so it holds no blank and no sign that a path,
// a section name or a command line reads otherwise.
#pragma once

#include <cstddef>
#include <ctime>
#include <string>
#include <vector>

// How many characters of the product's name an EventID keeps.
constexpr std::size_t kEventNameLength = 16;

// The short name: of the first candidate that holds any, its ASCII letters,
// digits, '-' and '_', cut to kEventNameLength; "ZOR" if none holds one.
std::string ShortEventName(const std::vector<std::string>& candidates);

// "<name>-YYYYMMDD-HHMMSS-xxxx": `local` as local calendar fields (std::tm),
// and the low 16 bits of `random` as four lower-case hex digits.
std::string MakeEventId(const std::string& name, const std::tm& local, unsigned random);

// MakeEventId for the short name of `candidates`, the local time now and 16
// bits from std::random_device.
std::string NewEventId(const std::vector<std::string>& candidates);
