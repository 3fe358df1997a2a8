// Reads one event log, line by line as it streams in: the computer report of
// -start, every line of it, the snapshots before and after the install, and the installer's
// messages, which are the lines that belong to no block of the recorder's.
// A block begins only where its opening lines stand whole, as the recorder
// writes them (a snapshot's frame and title, a title and its rule, the start
// banner and its EventID line), and only where the recorder puts it: the
// banner at the head of the log, the computer report right behind it, the
// result block right behind the snapshot after the install. A message that
// reads like a line of them, or like a block out of its place, stays a
// message, and the lines behind it are read as they stand. A rule of a
// snapshot's frame that a frame line follows is the first line of a frame,
// whatever stood before it.
// A message may hold line ends, and so a whole snapshot block: the snapshot
// before the install is the first block titled so (in a log as the recorder
// writes it, the one at its head). Of those
// after it, the last that the recorder's own output follows (its result
// block, or the end of a log cut off in it), else the last; none where
// History.ini says that the install never ended. Every other snapshot block
// goes to the messages, in its place among them, and a note tells how many
// lines.
// A snapshot ends at its closing lines, a rule and the closing title, or where
// a rule and a frame line begin the frame of another.
// A log cut off in the middle gives what could be read, with a note of what
// stood in the way.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
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

    // How History.ini says the install ended: an install that never ended
    // has no snapshot after it but the one that a result block follows.
    enum class InstallEnd { Unknown, Ended, NeverEnded };

    // Sections whose text `memo` knows are not read again; readers of the
    // events of one machine share one memo.
    explicit CEventLogReader(std::string eventId,
                             std::shared_ptr<CSectionMemo> memo = std::make_shared<CSectionMemo>(),
                             InstallEnd end = InstallEnd::Unknown);

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
    // What the result block behind the snapshot after the install says of
    // the event, read to its closing rule. The recorder writes it at -end
    // from the event's section: it tells how an event ended that History.ini
    // doesn't hold whole.
    std::optional<EventRecord> resultBlock;

private:
    // Lines on their way to the messages, each kept to its limit, as many as
    // the messages can show; the rest only counted.
    struct HeldMessages {
        // The lines kept, each with a line end behind it, in one text, and
        // what was cut of each that was cut, by its place among them.
        std::string text;
        std::vector<CutText> cuts;
        std::size_t kept = 0;
        std::size_t count = 0;
        void Add(const std::string& line, std::uint64_t bytesCut);
    };
    // A snapshot block that does not stand at the head of the log: the
    // snapshot after the install, or a message that reads like one. Its
    // lines are held until it is known which, so that a message goes to the
    // messages in its place among them.
    struct Candidate {
        bool isAfter = true;
        Snapshot snapshot;
        std::vector<std::string> notes;
        HeldMessages held;
        // The messages that stand before it in the log, kept or left out.
        std::size_t anchor = 0;
        bool closed = false;
        // The result block follows it, or the end of a log cut off in it.
        bool recorderFollows = false;
        // The result block behind it, and whether it was read to its rule.
        EventRecord resultBlock;
        bool resultBlockWhole = false;
    };
    // Why a block that reads like a snapshot went to the messages.
    enum class LookAlike { Before, After, NeverWritten };
    struct LookAlikes {
        std::size_t blocks = 0;
        std::size_t lines = 0;
    };

    enum class Place { Outside, Banner, Computer, Snapshot, ResultBlock };
    // What the last line that was not blank belonged to.
    enum class LastRead { Nothing, Banner, Computer, SnapshotAfter, Result, Other };

    void LineOutside(const std::string& line);
    void ResolvePending();
    bool MayOpenBlock(bool& complete) const;
    void ReleasePending();
    void LongLineOutside(const std::string& line, std::uint64_t bytesCut);
    void LineInSnapshot(const std::string& line, std::uint64_t bytesCut);
    void LineInBlock(const std::string& line);
    void ComputerLine(const std::string& line);
    void BeginResultBlock();
    void ResultLine(const std::string& line);
    void SnapshotLine(const std::string& line, std::uint64_t bytesCut);
    void BeginSnapshot(const std::vector<std::string>& opening, bool onClosingRule);
    void BeginCandidate(bool isAfter, const std::vector<std::string>& opening, bool onClosingRule);
    void EndSnapshot(bool closed);
    void Settle(bool recorderFollows);
    void ToMessages(Candidate& lookAlike, LookAlike kind, Candidate* later = nullptr);
    void NoteLookAlikes();
    bool PendingIsWholeOpening() const;
    void OpenPendingSnapshot();
    void ReleaseFirstLine(const std::string& line);
    void InsertMessages(std::size_t at, const HeldMessages& held);
    void Hold(const std::string& line, std::uint64_t bytesCut = 0);
    void HoldWithKept(const std::string& line);
    void SnapshotNote(const std::string& note);
    void BeginSection(SnapshotPart part);
    void EndSection(bool complete);
    std::shared_ptr<const SnapshotSection> SectionRead(bool complete);
    void AddMessage(const std::string& line, std::uint64_t bytesCut = 0);
    std::size_t MessagesSoFar() const;
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
    // A rule in a snapshot: its closing lines, or another frame, may begin.
    bool ruleHeld_ = false;
    InstallEnd end_;
    // The snapshot block being read, or read and waiting for what follows it.
    std::optional<Candidate> open_;
    // The snapshot after the install as far as the log has been read.
    std::optional<Candidate> kept_;
    // The held-back lines begin with the rule that may close the snapshot
    // read last.
    bool pendingClosingRule_ = false;
    std::array<LookAlikes, 3> lookAlikes_{};
};
