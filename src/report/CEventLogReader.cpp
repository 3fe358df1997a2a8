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

bool IsBanner(const std::string& line)
{
    return StartsWith(line, texts::kStartBanner) || StartsWith(line, texts::kEndBanner);
}

bool IsResultTitle(const std::string& line)
{
    return StartsWith(line, texts::kResultBlockTitle) && line.back() == ':';
}

// Whether the lines are a snapshot's opening as far as they have come, and
// whether they are whole: its frame rule, the title (before it a blank frame
// line after the install), a blank frame line and the rule again.
bool MayOpenSnapshot(const std::vector<std::string>& lines, bool& complete)
{
    const std::size_t count = lines.size();
    const bool titleFirst = count < 2 || StartsWith(lines[1], texts::kSnapshotTitle);
    const std::size_t titleAt = titleFirst ? 1 : 2;
    complete = count == titleAt + 3;
    if (!titleFirst && lines[1] != kBlankFrameLine)
        return false;
    if (count > titleAt && !StartsWith(lines[titleAt], texts::kSnapshotTitle))
        return false;
    return (count <= titleAt + 1 || lines[titleAt + 1] == kBlankFrameLine) &&
           (count <= titleAt + 2 || lines[titleAt + 2] == kFrameRule);
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

CEventLogReader::CEventLogReader(std::string eventId, std::shared_ptr<CSectionMemo> memo)
    : eventId_(std::move(eventId)), memo_(std::move(memo))
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
    AddMessage(line, bytesCut);
}

void CEventLogReader::Finish()
{
    // Opening lines cut off at the end of the log are what they read as.
    while (!pending_.empty())
        ReleasePending();
    if (place_ == Place::Snapshot)
        EndSnapshot(false);
    place_ = Place::Outside;
}

void CEventLogReader::LineOutside(const std::string& line)
{
    const bool closingRule = closingRuleDue_ && pending_.empty() && line == kFrameRule;
    if (!line.empty())
        closingRuleDue_ = false;
    if (closingRule || (line.empty() && pending_.empty()))
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
    if (lastRead_ == LastRead::SnapshotAfter && IsResultTitle(first))
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
    std::vector<std::string> lines;
    lines.swap(pending_);
    if (lines.front() == kFrameRule)
        return BeginSnapshot(TextBehind(SnapshotTitleLine(lines), texts::kSnapshotTitle));
    if (lines.front() == texts::computer::kTitle) {
        lastRead_ = LastRead::Computer;
        place_ = Place::Computer;
        blockLinesLeft_ = kComputerLines;
        blockRulesLeft_ = 2;
        blockRule_ = kComputerRule;
    } else if (IsResultTitle(lines.front())) {
        lastRead_ = LastRead::Other;
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

// The first held-back line is a message; the others are read again, since
// one of them may open a block of its own.
void CEventLogReader::ReleasePending()
{
    std::vector<std::string> lines;
    lines.swap(pending_);
    lastRead_ = LastRead::Other;
    if (!StartsWith(lines.front(), texts::kEndBanner))
        AddMessage(lines.front());
    for (std::size_t i = 1; i < lines.size(); ++i)
        Line(lines[i]);
}

// The banner's labelled lines, the computer report and the result block.
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
    if (place_ == Place::Computer)
        ComputerLine(line);
    if ((line == blockRule_ && --blockRulesLeft_ == 0) || --blockLinesLeft_ == 0) {
        computer.complete = computer.complete || (place_ == Place::Computer && line == blockRule_);
        place_ = Place::Outside;
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

void CEventLogReader::LineInSnapshot(const std::string& line, std::uint64_t bytesCut)
{
    SnapshotPart part;
    if (IsClosingLine(line)) {
        EndSnapshot(true);
        closingRuleDue_ = true;
    } else if (StartsWith(line, texts::kSnapshotTitle) || IsBanner(line)) {
        EndSnapshot(false);
        LineOutside(line);
    } else if (IsSectionHeading(line, part)) {
        BeginSection(part);
    } else if (inSection_ && !line.empty()) {
        AddSectionLine(line, bytesCut);
    }
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
// " -- After ".
void CEventLogReader::BeginSnapshot(const std::string& title)
{
    bool isAfter = false;
    if (StartsWith(title, (eventId_ + texts::kSnapshotAfter).c_str()))
        isAfter = true;
    else if (!StartsWith(title, (eventId_ + texts::kSnapshotBefore).c_str()))
        isAfter = title.find(texts::kSnapshotAfter) != std::string::npos;
    snapshotIsAfter_ = isAfter;
    Snapshot& target = isAfter ? after : before;
    const char* which = isAfter ? "after" : "before";
    if (target.complete) {
        AddNote(std::string("a second snapshot ") + which + " the install was left out");
        snapshot_ = nullptr;
    } else {
        target = Snapshot();
        target.present = true;
        snapshot_ = &target;
    }
    place_ = Place::Snapshot;
    inSection_ = false;
}

void CEventLogReader::EndSnapshot(bool closed)
{
    EndSection(closed);
    if (snapshot_ != nullptr) {
        snapshot_->complete = closed;
        if (!closed)
            AddNote(std::string("the snapshot ") + (snapshot_ == &after ? "after" : "before") +
                    " the install is cut off");
    }
    snapshot_ = nullptr;
    place_ = Place::Outside;
    lastRead_ = closed && snapshotIsAfter_ ? LastRead::SnapshotAfter : LastRead::Other;
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
            AddNote(TooLongSectionNote());
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
    memo_->Keep(part_, std::move(sectionText_), section);
    return section;
}

std::string CEventLogReader::TooLongSectionNote() const
{
    return "the section \"" + SectionTitle(static_cast<std::size_t>(part_)) + "\" of the snapshot " +
           (snapshot_ == &after ? "after" : "before") + " the install holds " + std::to_string(sectionLineCount_) +
           " lines, " + std::to_string(sectionBytes_) + " bytes: more than the recorder writes, so it is not compared";
}

// Each message up to its limit, with what was cut of it.
void CEventLogReader::AddMessage(const std::string& line, std::uint64_t bytesCut)
{
    if (messages.size() >= kMessageLimit) {
        ++messagesLeftOut;
        return;
    }
    const std::size_t kept = std::min(line.size(), kMessageTextLimit);
    bytesCut += line.size() - kept;
    if (bytesCut != 0)
        messagesCut.push_back(CutText{messages.size(), bytesCut});
    messages.push_back(line.substr(0, kept));
}

// Each note once, however often the log gives cause for it.
void CEventLogReader::AddNote(const std::string& note)
{
    if (std::find(notes.begin(), notes.end(), note) == notes.end())
        notes.push_back(note);
}
