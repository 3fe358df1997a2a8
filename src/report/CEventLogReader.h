// Reads one event log, line by line as it streams in: the computer report of
// -start, the snapshots before and after the install, and the installer's
// messages, which are the lines that belong to no block of the recorder's.
// A log cut off in the middle, or one whose blocks stand out of order or
// twice, gives what could be read, with a note of what stood in the way.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "report/SectionReaders.h"
#include "report/Snapshot.h"

class CEventLogReader {
public:
    // At most this many messages are kept; the rest are counted.
    static constexpr std::size_t kMessageLimit = 1000;
    // A section of more lines than this is no section the recorder wrote: it
    // is read no further, and counts as cut off.
    static constexpr std::size_t kSectionLineLimit = 200000;

    explicit CEventLogReader(std::string eventId);

    void Line(const std::string& line);
    // The end of the log: a snapshot still open was cut off.
    void Finish();

    std::string computerName;
    std::string operatingSystem;
    Snapshot before;
    Snapshot after;
    std::vector<std::string> messages;
    std::size_t messagesLeftOut = 0;
    std::vector<std::string> notes;

private:
    enum class Place { Outside, Banner, Computer, Snapshot, ResultBlock };

    void LineOutside(const std::string& line);
    void LineInSnapshot(const std::string& line);
    void LineInBlock(const std::string& line);
    void BeginSnapshot(const std::string& title);
    void EndSnapshot(bool closed);
    void BeginSection(SnapshotPart part);
    void EndSection(bool complete);
    void AddMessage(const std::string& line);
    void AddNote(const std::string& note);

    std::string eventId_;
    Place place_ = Place::Outside;
    // Lines left of the banner, the computer report or the result block.
    int blockLinesLeft_ = 0;
    int blockRulesLeft_ = 0;
    std::string blockRule_;
    Snapshot* snapshot_ = nullptr;
    bool inSection_ = false;
    bool sectionTooLong_ = false;
    SnapshotPart part_ = SnapshotPart::Users;
    SectionLines sectionLines_;
};
