#include "report/CEventLogReader.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "collectors/ReportTexts.h"
#include "recorder/EventTexts.h"
#include "report/ReportWords.h"
#include "report/SectionText.h"

namespace {

const std::string kFrameRule(texts::kSnapshotRuleLength, '*');
const std::string kBlankFrameLine = "*" + std::string(texts::kSnapshotFrameWidth - 1, ' ');
const std::string kComputerRule(texts::computer::kRuleLength, '=');
const std::string kResultRule(texts::kResultRuleLength, '=');

// The banner's four labelled lines, the computer report's lines behind its
// title and the result block's behind its own: each block ends at its last
// rule, or after this many lines when a damaged log lacks it.
constexpr int kBannerLines = 4;
constexpr int kComputerLines = 9;
constexpr int kResultLines = 12;

// The result block's labelled lines, and the field of the event that each
// gives.
const std::pair<const char*, std::string EventRecord::*> kResultFields[] = {
    {texts::kResultStartLabel, &EventRecord::startTime},
    {texts::kResultEndLabel, &EventRecord::endTime},
    {texts::kResultProductLabel, &EventRecord::product},
    {texts::kResultServiceLevelLabel, &EventRecord::serviceLevel},
    {texts::kResultTypeLabel, &EventRecord::type},
    {texts::kResultActionLabel, &EventRecord::action},
    {texts::kResultResultLabel, &EventRecord::result},
    {texts::kResultLogFileLabel, &EventRecord::logFile},
    {texts::kResultTraceFileLabel, &EventRecord::traceFile},
};

const char* const kComputerLabels[] = {
    texts::computer::kComputerNameLabel, texts::computer::kOSLabel,
    texts::computer::kTypeLabel,         texts::computer::kServicePackLabel,
    texts::computer::kProcessorCountLabel, texts::computer::kCPULabel,
};

// A section's heading: its number, then one of the six titles.
bool IsSectionHeading(const std::string& line, SnapshotPart& part)
{
    std::size_t digits = 0;
    while (digits < line.size() && std::isdigit(static_cast<unsigned char>(line[digits])))
        ++digits;
    if (digits == 0 || digits > 2)
        return false;
    for (std::size_t i = 0; i < kSnapshotPartCount; ++i) {
        if (line.compare(digits, std::string::npos, texts::kSnapshotSectionTitles[i]) == 0) {
            part = static_cast<SnapshotPart>(i);
            return true;
        }
    }
    return false;
}

// The lines of a section's text, each of which ends with a line end.
SectionLines LinesOf(std::string_view text)
{
    SectionLines lines;
    for (std::size_t begin = 0, end; begin < text.size(); begin = end + 1) {
        end = text.find('\n', begin);
        lines.push_back(text.substr(begin, end - begin));
    }
    return lines;
}

bool IsClosingLine(const std::string& line)
{
    return StartsWith(line, texts::kSnapshotStartClosing) || StartsWith(line, texts::kSnapshotEndClosing);
}

// A line that may follow a rule in the frame of a snapshot.
bool IsFrameLine(const std::string& line)
{
    return line == kBlankFrameLine || StartsWith(line, texts::kSnapshotTitle);
}

bool IsResultTitle(const std::string& line)
{
    return StartsWith(line, texts::kResultBlockTitle) && line.back() == ':';
}

// The lines of a snapshot's opening: its frame rule, the title (before it a
// blank frame line after the install), a blank frame line and the rule again.
std::size_t SnapshotOpeningSize(const std::vector<std::string>& lines)
{
    return lines.size() < 2 || StartsWith(lines[1], texts::kSnapshotTitle) ? 4 : 5;
}

// Whether the lines are a snapshot's opening as far as they have come, and
// whether they are whole: the opening and the line behind it, which must not
// be a frame line, since that makes the opening's last rule the first of
// another frame's.
bool MayOpenSnapshot(const std::vector<std::string>& lines, bool& complete)
{
    const std::size_t count = lines.size();
    const std::size_t size = SnapshotOpeningSize(lines);
    const std::size_t titleAt = size - 3;
    complete = count == size + 1;
    if (titleAt == 2 && lines[1] != kBlankFrameLine)
        return false;
    if (count > titleAt && !StartsWith(lines[titleAt], texts::kSnapshotTitle))
        return false;
    return (count <= titleAt + 1 || lines[titleAt + 1] == kBlankFrameLine) &&
           (count <= titleAt + 2 || lines[titleAt + 2] == kFrameRule) && (count <= size || !IsFrameLine(lines[size]));
}

// The same for a block of a title line and a second line that `second` accepts.
template <typename Accepts>
bool MayOpenTitledBlock(const std::vector<std::string>& lines, bool& complete, Accepts second)
{
    complete = lines.size() == 2;
    return lines.size() < 2 || second(lines[1]);
}

// The snapshot's title among its opening lines.
const std::string& SnapshotTitleLine(const std::vector<std::string>& lines)
{
    return StartsWith(lines[1], texts::kSnapshotTitle) ? lines[1] : lines[2];
}

}  // namespace

CEventLogReader::CEventLogReader(std::string eventId, std::shared_ptr<CSectionMemo> memo, InstallEnd end)
    : eventId_(std::move(eventId)), memo_(std::move(memo)), end_(end)
{
}

void CEventLogReader::Line(const std::string& line, std::uint64_t bytesCut)
{
    if (place_ == Place::Snapshot)
        LineInSnapshot(line, bytesCut);
    else if (place_ == Place::Outside && bytesCut != 0)
        LongLineOutside(line, bytesCut);
    else if (place_ == Place::Outside)
        LineOutside(line);
    else
        LineInBlock(line);
}

// A line cut short is longer than any line of the recorder's blocks, so it
// opens none and completes none: the lines held back go as they read, and
// it is a message.
void CEventLogReader::LongLineOutside(const std::string& line, std::uint64_t bytesCut)
{
    while (!pending_.empty())
        ReleasePending();
    if (place_ != Place::Outside)
        return Line(line, bytesCut);
    closingRuleDue_ = false;
    lastRead_ = LastRead::Other;
    Settle(false);
    AddMessage(line, bytesCut);
}

void CEventLogReader::Finish()
{
    // Opening lines cut off at the end of the log are what they read as.
    if (PendingIsWholeOpening())
        OpenPendingSnapshot();
    while (!pending_.empty())
        ReleasePending();
    if (place_ == Place::Snapshot && ruleHeld_) {
        Hold(kFrameRule);
        SnapshotLine(kFrameRule, 0);
    }
    const bool cutOff = place_ == Place::Snapshot;
    if (cutOff)
        EndSnapshot(false);
    Settle(cutOff);
    place_ = Place::Outside;
    if (kept_) {
        after = std::move(kept_->snapshot);
        if (kept_->resultBlockWhole)
            resultBlock = std::move(kept_->resultBlock);
        for (const std::string& note : kept_->notes)
            AddNote(note);
        kept_.reset();
    }
    NoteLookAlikes();
}

// A snapshot's whole opening at the end of the log, with no line behind it.
bool CEventLogReader::PendingIsWholeOpening() const
{
    bool complete = false;
    return !pending_.empty() && pending_.front() == kFrameRule && MayOpenSnapshot(pending_, complete) &&
           pending_.size() == SnapshotOpeningSize(pending_);
}

void CEventLogReader::OpenPendingSnapshot()
{
    std::vector<std::string> lines;
    lines.swap(pending_);
    const bool onClosingRule = pendingClosingRule_;
    pendingClosingRule_ = false;
    Settle(false);
    BeginSnapshot(lines, onClosingRule);
}

void CEventLogReader::LineOutside(const std::string& line)
{
    if (closingRuleDue_ && pending_.empty() && line == kFrameRule)
        pendingClosingRule_ = true;
    if (!line.empty())
        closingRuleDue_ = false;
    if (line.empty() && pending_.empty())
        return;
    pending_.push_back(line);
    ResolvePending();
}

// The held-back lines as the opening of the block that may stand here.
bool CEventLogReader::MayOpenBlock(bool& complete) const
{
    const std::string& first = pending_.front();
    if (first == kFrameRule)
        return MayOpenSnapshot(pending_, complete);
    if (lastRead_ == LastRead::Nothing && StartsWith(first, texts::kStartBanner))
        return MayOpenTitledBlock(pending_, complete, [](const std::string& second) {
            return StartsWith(second, texts::kBannerEventIdLabel);
        });
    if (lastRead_ == LastRead::Banner && first == texts::computer::kTitle)
        return MayOpenTitledBlock(pending_, complete, [](const std::string& second) { return second == kComputerRule; });
    if (lastRead_ == LastRead::SnapshotAfter && end_ != InstallEnd::NeverEnded && IsResultTitle(first))
        return MayOpenTitledBlock(pending_, complete, [](const std::string& second) { return second == kResultRule; });
    return false;
}

// Opens the block that the held-back lines open, once they are whole; lets
// them go as they read when they can't.
void CEventLogReader::ResolvePending()
{
    bool complete = false;
    if (!MayOpenBlock(complete))
        return ReleasePending();
    if (!complete)
        return;
    if (pending_.front() == kFrameRule) {
        const std::string behind = std::move(pending_.back());
        pending_.pop_back();
        OpenPendingSnapshot();
        return Line(behind);
    }
    std::vector<std::string> lines;
    lines.swap(pending_);
    pendingClosingRule_ = false;
    Settle(IsResultTitle(lines.front()));
    if (lines.front() == texts::computer::kTitle) {
        lastRead_ = LastRead::Computer;
        place_ = Place::Computer;
        blockLinesLeft_ = kComputerLines;
        blockRulesLeft_ = 2;
        blockRule_ = kComputerRule;
    } else if (IsResultTitle(lines.front())) {
        lastRead_ = LastRead::Result;
        HoldWithKept(lines.front());
        BeginResultBlock();
        place_ = Place::ResultBlock;
        blockLinesLeft_ = kResultLines;
        blockRulesLeft_ = 2;
        blockRule_ = kResultRule;
    } else {
        lastRead_ = LastRead::Banner;
        place_ = Place::Banner;
        blockLinesLeft_ = kBannerLines;
    }
    LineInBlock(lines[1]);
}

// The first held-back line is a message, or the closing rule of the snapshot
// read last; the others are read again, since one of them may open a block
// of its own.
void CEventLogReader::ReleasePending()
{
    std::vector<std::string> lines;
    lines.swap(pending_);
    const bool closingRule = pendingClosingRule_;
    pendingClosingRule_ = false;
    if (closingRule)
        Hold(lines.front());
    else
        ReleaseFirstLine(lines.front());
    for (std::size_t i = 1; i < lines.size(); ++i)
        Line(lines[i]);
}

// A line held back that opens no block: the end banner behind the result
// block, or a message.
void CEventLogReader::ReleaseFirstLine(const std::string& line)
{
    const bool endBanner = lastRead_ == LastRead::Result && StartsWith(line, texts::kEndBanner);
    lastRead_ = LastRead::Other;
    Settle(false);
    if (endBanner)
        HoldWithKept(line);
    else
        AddMessage(line);
}

// The banner's labelled lines, the computer report and the result block; the
// last two end early at a snapshot's rule.
void CEventLogReader::LineInBlock(const std::string& line)
{
    if (place_ == Place::Banner) {
        const bool labelled = StartsWith(line, texts::kBannerEventIdLabel) ||
                              StartsWith(line, texts::kBannerProductLabel) ||
                              StartsWith(line, texts::kBannerServiceLevelLabel) ||
                              StartsWith(line, texts::kBannerCommandLineLabel);
        if (!labelled) {
            place_ = Place::Outside;
            return LineOutside(line);
        }
        if (--blockLinesLeft_ == 0)
            place_ = Place::Outside;
        return;
    }
    if (line == kFrameRule) {
        place_ = Place::Outside;
        return LineOutside(line);
    }
    if (place_ == Place::Computer)
        ComputerLine(line);
    else
        ResultLine(line);
    if ((line == blockRule_ && --blockRulesLeft_ == 0) || --blockLinesLeft_ == 0) {
        computer.complete = computer.complete || (place_ == Place::Computer && line == blockRule_);
        if (kept_ && place_ == Place::ResultBlock && line == blockRule_)
            kept_->resultBlockWhole = true;
        place_ = Place::Outside;
    }
}

// The result block belongs to the snapshot after the install in front of it:
// if a later one is kept, it goes to the messages with it.
void CEventLogReader::BeginResultBlock()
{
    if (!kept_)
        return;
    kept_->resultBlock = EventRecord();
    kept_->resultBlock.completeFlag = texts::kComplete;
    kept_->resultBlockWhole = false;
}

void CEventLogReader::ResultLine(const std::string& line)
{
    HoldWithKept(line);
    if (!kept_)
        return;
    for (const auto& field : kResultFields) {
        if (StartsWith(line, field.first))
            kept_->resultBlock.*field.second = TextBehind(line, field.first);
    }
}

// Each labelled line of the computer report, by its label without the blanks
// and the colon that pad it.
void CEventLogReader::ComputerLine(const std::string& line)
{
    for (const char* label : kComputerLabels) {
        if (!StartsWith(line, label))
            continue;
        std::string name = label;
        name.pop_back();
        computer.present = true;
        computer.fieldsRule = [](const SnapshotSection&, std::string_view label, const SnapshotItem& item) {
            return NamedValueFields("computerLine", "label", "text", ItemField::Form::Text, label, item.value);
        };
        computer.Add(TrimmedRight(name), TextBehind(line, label));
    }
    if (computerName.empty() && StartsWith(line, texts::computer::kComputerNameLabel))
        computerName = TextBehind(line, texts::computer::kComputerNameLabel);
    if (operatingSystem.empty() && StartsWith(line, texts::computer::kOSLabel))
        operatingSystem = TextBehind(line, texts::computer::kOSLabel);
}

// A rule is held until the line behind it tells whether the closing lines
// or the frame of another snapshot begin with it, or it is a line of the
// section.
void CEventLogReader::LineInSnapshot(const std::string& line, std::uint64_t bytesCut)
{
    if (ruleHeld_ && IsFrameLine(line)) {
        ruleHeld_ = false;
        EndSnapshot(false);
        LineOutside(kFrameRule);
        return LineOutside(line);
    }
    if (ruleHeld_) {
        ruleHeld_ = false;
        Hold(kFrameRule);
        if (IsClosingLine(line)) {
            Hold(line, bytesCut);
            EndSnapshot(true);
            closingRuleDue_ = true;
            return;
        }
        SnapshotLine(kFrameRule, 0);
    }
    ruleHeld_ = line == kFrameRule;
    if (ruleHeld_)
        return;
    Hold(line, bytesCut);
    SnapshotLine(line, bytesCut);
}

void CEventLogReader::SnapshotLine(const std::string& line, std::uint64_t bytesCut)
{
    SnapshotPart part;
    if (IsSectionHeading(line, part))
        BeginSection(part);
    else if (inSection_ && !line.empty())
        AddSectionLine(line, bytesCut);
}

// The section's lines up to its limits; past them only counted.
void CEventLogReader::AddSectionLine(const std::string& line, std::uint64_t bytesCut)
{
    ++sectionLineCount_;
    sectionBytes_ += line.size() + bytesCut;
    sectionTooLong_ = sectionTooLong_ || bytesCut != 0 || sectionLineCount_ > kSectionLineLimit ||
                      sectionBytes_ > kSectionByteLimit;
    if (sectionTooLong_) {
        sectionText_ = std::string();
        return;
    }
    sectionText_ += line;
    sectionText_ += '\n';
}

// The title tells before from after: the EventID, then " -- Before " or
// " -- After ". The first snapshot before the install is read as it comes;
// any other block waits for what follows it.
void CEventLogReader::BeginSnapshot(const std::vector<std::string>& opening, bool onClosingRule)
{
    const std::string title = TextBehind(SnapshotTitleLine(opening), texts::kSnapshotTitle);
    bool isAfter = false;
    if (StartsWith(title, (eventId_ + texts::kSnapshotAfter).c_str()))
        isAfter = true;
    else if (!StartsWith(title, (eventId_ + texts::kSnapshotBefore).c_str()))
        isAfter = title.find(texts::kSnapshotAfter) != std::string::npos;
    snapshotIsAfter_ = isAfter;
    place_ = Place::Snapshot;
    inSection_ = false;
    if (isAfter || before.present)
        return BeginCandidate(isAfter, opening, onClosingRule);
    before.present = true;
    snapshot_ = &before;
}

// A block after the head of the log; a second one before the install is
// read as no snapshot at all, since only messages can have written it. A
// block whose first rule may have closed the snapshot before it doesn't take
// that rule with it to the messages: it is that snapshot's closing rule
// unless messages copied both.
void CEventLogReader::BeginCandidate(bool isAfter, const std::vector<std::string>& opening, bool onClosingRule)
{
    open_ = Candidate();
    open_->isAfter = isAfter;
    open_->anchor = MessagesSoFar();
    for (std::size_t line = onClosingRule ? 1 : 0; line < opening.size(); ++line)
        open_->held.Add(opening[line], 0);
    open_->snapshot.present = true;
    snapshot_ = isAfter ? &open_->snapshot : nullptr;
}

void CEventLogReader::EndSnapshot(bool closed)
{
    EndSection(closed);
    if (snapshot_ != nullptr) {
        snapshot_->complete = closed;
        if (!closed)
            SnapshotNote(std::string("the snapshot ") + (snapshotIsAfter_ ? "after" : "before") +
                         " the install is cut off");
    }
    if (open_)
        open_->closed = true;
    snapshot_ = nullptr;
    place_ = Place::Outside;
    lastRead_ = closed && snapshotIsAfter_ ? LastRead::SnapshotAfter : LastRead::Other;
}

// What follows a block that was read decides what it is. The recorder's own
// snapshot after the install is followed by the result block, or by the end
// of a log cut off in it; of two such blocks the later is kept, since the
// recorder writes it at the end of the log. A block that neither follows is
// kept only where no such block is, as the last of its kind. An install that
// never ended has written no snapshot after it: every such block is a
// message.
void CEventLogReader::Settle(bool recorderFollows)
{
    if (!open_ || !open_->closed)
        return;
    Candidate read = std::move(*open_);
    open_.reset();
    read.recorderFollows = recorderFollows;
    if (!read.isAfter)
        return ToMessages(read, LookAlike::Before);
    if (end_ == InstallEnd::NeverEnded)
        return ToMessages(read, LookAlike::NeverWritten);
    if (!recorderFollows && kept_ && kept_->recorderFollows)
        return ToMessages(read, LookAlike::After);
    if (kept_)
        ToMessages(*kept_, LookAlike::After, &read);
    kept_ = std::move(read);
}

// A block that is no snapshot goes to the messages in its place among them;
// a block read later than it stands that much later among them.
void CEventLogReader::ToMessages(Candidate& lookAlike, LookAlike kind, Candidate* later)
{
    InsertMessages(lookAlike.anchor, lookAlike.held);
    if (later != nullptr)
        later->anchor += lookAlike.held.count;
    LookAlikes& counted = lookAlikes_[static_cast<std::size_t>(kind)];
    ++counted.blocks;
    counted.lines += lookAlike.held.count;
}

// One note for each kind of block that went to the messages, with their
// lines, the lines of the result block and end banner behind them included.
void CEventLogReader::NoteLookAlikes()
{
    static const char* const kWhy[] = {
        "before the install: the one at the head of the log is compared",
        "after the install: the one that stands where the recorder writes it is compared",
        "after the install, which an install that never ended has not written",
    };
    for (std::size_t kind = 0; kind < lookAlikes_.size(); ++kind) {
        const LookAlikes& counted = lookAlikes_[kind];
        if (counted.blocks == 1)
            AddNote("the messages hold " + std::to_string(counted.lines) + " lines that read like a snapshot " +
                    kWhy[kind]);
        else if (counted.blocks > 1)
            AddNote("the messages hold " + std::to_string(counted.lines) + " lines in " +
                    std::to_string(counted.blocks) + " blocks that read like snapshots " + kWhy[kind]);
    }
}

// The held lines put among the messages at their place, `at` messages from
// the first; the messages pushed over the limit by them are counted.
void CEventLogReader::InsertMessages(std::size_t at, const HeldMessages& held)
{
    if (at >= kMessageLimit) {
        messagesLeftOut += held.count;
        return;
    }
    const std::size_t added = held.kept;
    const bool amongThem = at < messages.size();
    messagesLeftOut += held.count - added;
    for (CutText& cut : messagesCut)
        cut.index += cut.index >= at ? added : 0;
    for (const CutText& cut : held.cuts) {
        if (at + cut.index < kMessageLimit)
            messagesCut.push_back(CutText{at + cut.index, cut.bytesCut});
    }
    std::vector<std::string> lines;
    lines.reserve(added);
    for (std::size_t begin = 0, end; begin < held.text.size(); begin = end + 1) {
        end = held.text.find('\n', begin);
        lines.emplace_back(held.text, begin, end - begin);
    }
    messages.insert(messages.begin() + static_cast<std::ptrdiff_t>(at), std::make_move_iterator(lines.begin()),
                    std::make_move_iterator(lines.end()));
    if (messages.size() > kMessageLimit) {
        messagesLeftOut += messages.size() - kMessageLimit;
        messages.resize(kMessageLimit);
    }
    if (!amongThem)
        return;
    messagesCut.erase(std::remove_if(messagesCut.begin(), messagesCut.end(),
                                     [](const CutText& cut) { return cut.index >= kMessageLimit; }),
                      messagesCut.end());
    std::sort(messagesCut.begin(), messagesCut.end(),
              [](const CutText& one, const CutText& other) { return one.index < other.index; });
}

// A line of the block being read, held in case it is a message.
void CEventLogReader::Hold(const std::string& line, std::uint64_t bytesCut)
{
    if (open_)
        open_->held.Add(line, bytesCut);
}

// A line of the result block and the end banner behind the snapshot after
// the install, held with it: if a later one is kept, they go to the
// messages with it.
void CEventLogReader::HoldWithKept(const std::string& line)
{
    if (kept_)
        kept_->held.Add(line, 0);
}

// A note on the snapshot being read: on a block that may yet be a message,
// it waits with the block.
void CEventLogReader::SnapshotNote(const std::string& note)
{
    if (!open_)
        return AddNote(note);
    if (std::find(open_->notes.begin(), open_->notes.end(), note) == open_->notes.end())
        open_->notes.push_back(note);
}

// A section that comes again replaces what was read of it before.
void CEventLogReader::BeginSection(SnapshotPart part)
{
    EndSection(true);
    part_ = part;
    inSection_ = true;
}

void CEventLogReader::EndSection(bool complete)
{
    if (inSection_ && snapshot_ != nullptr) {
        if (sectionTooLong_)
            SnapshotNote(TooLongSectionNote());
        snapshot_->Set(part_, SectionRead(complete && !sectionTooLong_));
    }
    sectionText_.clear();
    inSection_ = false;
    sectionTooLong_ = false;
    sectionLineCount_ = 0;
    sectionBytes_ = 0;
}

// What the section's text says, read once for as long as it comes again.
std::shared_ptr<const SnapshotSection> CEventLogReader::SectionRead(bool complete)
{
    if (std::shared_ptr<const SnapshotSection> known = memo_->Find(part_, sectionText_, complete))
        return known;
    const SectionLines lines = LinesOf(sectionText_);
    std::shared_ptr<SnapshotSection> section;
    if (part_ == SnapshotPart::Software) {
        section = memo_->SoftwareTable().Read(lines);
    } else {
        section = std::make_shared<SnapshotSection>();
        ReadSection(part_, lines, *section);
    }
    section->present = true;
    section->complete = complete;
    memo_->Keep(part_, sectionText_, section);
    return section;
}

std::string CEventLogReader::TooLongSectionNote() const
{
    return "the section \"" + SectionTitle(static_cast<std::size_t>(part_)) + "\" of the snapshot " +
           (snapshotIsAfter_ ? "after" : "before") + " the install holds " + std::to_string(sectionLineCount_) +
           " lines, " + std::to_string(sectionBytes_) + " bytes: more than the recorder writes, so it is not compared";
}

// Each message up to its limit, with what was cut of it.
void CEventLogReader::AddMessage(const std::string& line, std::uint64_t bytesCut)
{
    HeldMessages one;
    one.Add(line, bytesCut);
    InsertMessages(MessagesSoFar(), one);
}

std::size_t CEventLogReader::MessagesSoFar() const
{
    return messages.size() + messagesLeftOut;
}

void CEventLogReader::HeldMessages::Add(const std::string& line, std::uint64_t bytesCut)
{
    if (line.empty())
        return;
    ++count;
    if (kept >= kMessageLimit)
        return;
    const std::size_t size = std::min(line.size(), kMessageTextLimit);
    text.append(line, 0, size);
    text += '\n';
    if (bytesCut + line.size() - size != 0)
        cuts.push_back(CutText{kept, bytesCut + line.size() - size});
    ++kept;
}

// Each note once, however often the log gives cause for it.
void CEventLogReader::AddNote(const std::string& note)
{
    if (std::find(notes.begin(), notes.end(), note) == notes.end())
        notes.push_back(note);
}
