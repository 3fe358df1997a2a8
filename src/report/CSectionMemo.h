// The text of each section of a snapshot as it was read last, and what was
// read of it. A machine's snapshots repeat most sections from one to the next
// (an install changes a few things), so a section whose text comes again is
// not read again: the snapshots that hold it share what was read. It keeps
// one text for each of the six sections, each within the reader's limit of a
// section's bytes.
#pragma once

#include <array>
#include <memory>
#include <string>

#include "report/CSoftwareTable.h"
#include "report/Snapshot.h"

class CSectionMemo {
public:
    // What was read of this very text of the section, as complete or not; null
    // if it was not the text read last.
    std::shared_ptr<const SnapshotSection> Find(SnapshotPart part, const std::string& text, bool complete) const;
    // The text and what was read of it, in place of the section's text read
    // before, which `text` is left with: its room serves the next text.
    void Keep(SnapshotPart part, std::string& text, std::shared_ptr<const SnapshotSection> section);
    // The software table as read last, which the next text of it is read from.
    CSoftwareTable& SoftwareTable() { return softwareTable_; }

private:
    struct Entry {
        std::string text;
        std::shared_ptr<const SnapshotSection> section;
    };
    std::array<Entry, kSnapshotPartCount> entries_;
    CSoftwareTable softwareTable_;
};
