// Reads one event log, line by line as it streams in: the computer report of
// -start, every line of it, the snapshots before and after the install, and the installer's
// messages, which are the lines that belong to no block of the recorder's.
// A block begins only where its opening lines stand whole, as the recorder
// writes them (a snapshot's frame and title, a title and its rule, the start
// banner and its EventID line), and only where the recorder puts it: the
// banner at the head of the log, the computer report right behind it, the
// result block right behind the snapshot after the install. A message that
// reads like a line of them, or like a block out of its place, stays a
// message, and the lines behind it are read as they stand.
// A log cut off in the middle, or one whose blocks stand out of order or
// twice, gives what could be read, with a note of what stood in the way.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "report/CSectionMemo.h"
#include "report/ReportModel.h"
#include "report/SectionReaders.h"
#include "report/Snapshot.h"

class CEventLogReader {
public:
    // At most this many messages are kept; the rest are counted.
    static constexpr std::size_t kMessageLimit = 1000;
    // Of each message, at most this many bytes are kept; the rest are counted.
    static constexpr std::size_t kMessageTextLimit = 4096;
    // A section of more lines, or more bytes of text, than this is no section
    // the recorder wrote (its largest hold some thousands of short rows): it
    // is read no further, and counts as cut off.
    static constexpr std::size_t kSectionLineLimit = 100000;
    static constexpr std::uint64_t kSectionByteLimit = 4 * 1024 * 1024;

    // Sections whose text `memo` knows are not read again; readers of the
    // events of one machine share one memo.
    explicit CEventLogReader(std::string eventId,
                             std::shared_ptr<CSectionMemo> memo = std::make_shared<CSectionMemo>());

    // A line of the log; `bytesCut` bytes of it were dropped before it came
    // (a line that long is never one of the recorder's own).
    void Line(const std::string& line, std::uint64_t bytesCut = 0);
    // The end of the log: a snapshot still open was cut off.
    void Finish();

    std::string computerName;
    std::string operatingSystem;
    // Every line of the computer report, by its label; complete when the
    // report was read to its closing rule.
    SnapshotSection computer;
    Snapshot before;
    Snapshot after;
    std::vector<std::string> messages;
    std::size_t messagesLeftOut = 0;
    // The messages that were cut to kMessageTextLimit, with what was cut.
    std::vector<CutText> messagesCut;
    std::vector<std::string> notes;

private:
    enum class Place { Outside, Banner, Computer, Snapshot, ResultBlock };
    // What the last line that was not blank belonged to.
    enum class LastRead { Nothing, Banner, Computer, SnapshotAfter, Other };

    void LineOutside(const std::string& line);
    void ResolvePending();
    bool MayOpenBlock(bool& complete) const;
    void ReleasePending();
    void LongLineOutside(const std::string& line, std::uint64_t bytesCut);
    void LineInSnapshot(const std::string& line, std::uint64_t bytesCut);
    void LineInBlock(const std::string& line);
    void ComputerLine(const std::string& line);
    void BeginSnapshot(const std::string& title);
    void EndSnapshot(bool closed);
    void BeginSection(SnapshotPart part);
    void EndSection(bool complete);
    std::shared_ptr<const SnapshotSection> SectionRead(bool complete);
    void AddMessage(const std::string& line, std::uint64_t bytesCut = 0);
    void AddSectionLine(const std::string& line, std::uint64_t bytesCut);
    void AddNote(const std::string& note);
    std::string TooLongSectionNote() const;

    std::string eventId_;
    Place place_ = Place::Outside;
    // Lines left of the banner, the computer report or the result block.
    int blockLinesLeft_ = 0;
    int blockRulesLeft_ = 0;
    std::string blockRule_;
    Snapshot* snapshot_ = nullptr;
    bool inSection_ = false;
    bool sectionTooLong_ = false;
    std::size_t sectionLineCount_ = 0;
    std::uint64_t sectionBytes_ = 0;
    SnapshotPart part_ = SnapshotPart::Users;
    // The section's lines, each with a line end behind it.
    std::string sectionText_;
    std::shared_ptr<CSectionMemo> memo_;
    // The lines that may open a block, held back until they do or can't.
    std::vector<std::string> pending_;
    // The frame rule that ends a snapshot's closing lines is still to come.
    bool closingRuleDue_ = false;
    LastRead lastRead_ = LastRead::Nothing;
    bool snapshotIsAfter_ = false;
};
