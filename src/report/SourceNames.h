// Names of files in a history source, as the report looks them up: relative
// to the history folder, with "/" between the parts and ASCII letters in lower
// case, since Windows ignores their case. A name that is absolute, names a
// drive or climbs out with ".." has no such form: it is never looked up, so
// that nothing outside the source is ever read.
#pragma once

#include <string>

// The looked-up form of a name, or empty if the name may not be looked up.
std::string LookupName(const std::string& relativeName);

// The looked-up form of an archive's entry name. Entries are not refused
// here; an entry whose name climbs out keeps its ".." and so matches no name
// that LookupName gives.
std::string EntryLookupName(const std::string& entryName);
