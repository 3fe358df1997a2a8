// What changed from one snapshot to another, section by section. A section
// is compared only if both snapshots hold it whole; a thing that came or went
// with its owner is told with the owner alone, and below it. What came or went
// shows its value.
#pragma once

#include "report/ReportModel.h"
#include "report/Snapshot.h"

SectionChanges CompareSections(const SnapshotSection& before, const SnapshotSection& after);

SnapshotChanges CompareSnapshots(const Snapshot& before, const Snapshot& after);
