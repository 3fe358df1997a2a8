// What changed from one snapshot to another, section by section. A section
// is compared only if both snapshots hold it whole; a thing that came or went
// with its owner is told with the owner alone, and below it. What came or went
// shows its value. What one section and one thing may tell is bounded: each
// list of a section to kListLimit things, each thing's details to
// kDetailLimit, each text to kItemTextLimit bytes; the rest is counted.
#pragma once

#include <cstddef>

#include "report/ReportModel.h"
#include "report/Snapshot.h"

inline constexpr std::size_t kListLimit = 1000;
inline constexpr std::size_t kDetailLimit = 100;
inline constexpr std::size_t kItemTextLimit = 1024;

SectionChanges CompareSections(const SnapshotSection& before, const SnapshotSection& after);

SnapshotChanges CompareSnapshots(const Snapshot& before, const Snapshot& after);

ChangeCounts CountsOf(const SnapshotChanges& changes);
