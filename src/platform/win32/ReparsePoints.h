// Junctions and symbolic links on the way to a path in the store. Any user
// may make folders in ProgramData, so a link in place of an event or copy
// folder would send an administrator's writes wherever it points: the
// store's writes, copies and moves never go through one.
#pragma once

#include <string>

namespace platform {

// Whether the entry, or one of the folders that hold it as deep as the store
// nests (event folder, copy folder, history folder, maker's folder), is a
// reparse point.
bool LeadsThroughReparsePoint(const std::string& path);

}  // namespace platform
