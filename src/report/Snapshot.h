// One snapshot of the machine as the report reads it back from an event log:
// for each of the six sections, the things it names, each with the value that
// a change would show. A section read to its end is complete; one that was cut
// off, or never came, can't be compared.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include "recorder/EventTexts.h"

// The sections in the snapshot's order.
enum class SnapshotPart : std::size_t {
    Users,
    Software,
    Processes,
    Services,
    ZORProducts,
    ODBCDrivers,
};

inline constexpr std::size_t kSnapshotPartCount = texts::kSnapshotSectionCount;

// A thing that a section names, and its value. A thing that belongs to
// another one (a parameter to its instance, an instance to its copy) names
// that one as its owner, so that a copy that comes or goes is told once,
// without each of its parameters.
struct SnapshotItem {
    std::string value;
    std::string owner;
};

struct SnapshotSection {
    bool present = false;
    bool complete = false;
    std::map<std::string, SnapshotItem> items;

    // Adds a thing; a name that is there already gets the new value joined
    // to its old one, so that two rows of one name both show.
    void Add(const std::string& name, const std::string& value, const std::string& owner = std::string());
    // A thing that has no value of its own: named once, however often it is.
    void Mark(const std::string& name, const std::string& owner = std::string());
};

// A machine's snapshots repeat most sections from one to the next (an install
// changes a few things): the snapshots that hold a section unchanged share
// it, read once.
class Snapshot {
public:
    bool present = false;
    // The closing line was read.
    bool complete = false;
    // Written where the user table lists a user only through the groups that
    // name their members, apart from each user's own group, as on Linux.
    bool usersByGroupsAlone = false;

    // A section that never came is absent and empty.
    const SnapshotSection& operator[](SnapshotPart part) const { return Section(static_cast<std::size_t>(part)); }
    const SnapshotSection& Section(std::size_t index) const;
    void Set(SnapshotPart part, std::shared_ptr<const SnapshotSection> section);
    // Whether both snapshots hold this very section, so that it is unchanged
    // between them.
    bool Shares(const Snapshot& other, std::size_t index) const;

private:
    std::array<std::shared_ptr<const SnapshotSection>, kSnapshotPartCount> sections_;
};
