// The names in History.ini that belong to the store as a whole, not to one
// event: the section that holds the count of recorded events, and its key.
// The section's name is also the one name among the sections that is no event.
#pragma once

inline constexpr const char* kHistorySection = "History";
inline constexpr const char* kCountKey = "Count";
