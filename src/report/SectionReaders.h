// The readers of the six sections of a snapshot: each takes the section's
// lines, between its heading and the next, and names the things the section
// shows, with the values that a change would show.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "report/ReportModel.h"
#include "report/Snapshot.h"

// The lines of a section, as parts of its text.
using SectionLines = std::vector<std::string_view>;

// Groups as "group <name>" and "global group <name>", users as "user <name>"
// and "global user <name>" with the groups they belong to, and the logged-on
// user.
void ReadUsersSection(const SectionLines& lines, SnapshotSection& section);
// Each product by its name, with its version.
void ReadSoftwareSection(const SectionLines& lines, SnapshotSection& section);
// Each image name with the number of processes that run it: process ids
// differ between any two snapshots and are no change.
void ReadProcessesSection(const SectionLines& lines, SnapshotSection& section);
// Each service by its display name, with its state.
void ReadServicesSection(const SectionLines& lines, SnapshotSection& section);
// The product's copies, and below each its products, global profile values,
// instances and their parameters.
void ReadZORProductsSection(const SectionLines& lines, SnapshotSection& section);
// Each driver, and below it its parameters.
void ReadODBCDriversSection(const SectionLines& lines, SnapshotSection& section);

// Where the user table lists a user only through the groups that name their
// members, a user who comes or goes in it joined a first such group or left a
// last one: the changes of the users section say so, as changes of groups.
void TellUsersByTheirGroups(SectionChanges& users);

void ReadSection(SnapshotPart part, const SectionLines& lines, SnapshotSection& section);
