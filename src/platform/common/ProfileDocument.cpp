#include "platform/common/ProfileDocument.h"

#include <algorithm>

#include "platform/common/AsciiCase.h"

namespace platform {

namespace {

const std::string kUtf8Marker = "\xEF\xBB\xBF";
const char* const kLineEnd = "\r\n";

// The blanks of the profile format: tab to carriage return, blank, and ^Z,
// the old end-of-file mark that some media still carry.
bool IsBlank(char c)
{
    return (c >= 0x09 && c <= 0x0d) || c == 0x1a || c == ' ';
}

bool IsLineBreak(char c)
{
    return c == '\r' || c == '\n';
}

std::string WithoutLeadingBlanks(const std::string& text)
{
    std::size_t start = 0;
    while (start < text.size() && IsBlank(text[start]))
        ++start;
    return text.substr(start);
}

std::string WithoutBlanksAround(const std::string& text)
{
    std::string trimmed = WithoutLeadingBlanks(text);
    while (!trimmed.empty() && IsBlank(trimmed.back()))
        trimmed.pop_back();
    return trimmed;
}

// The calls keep names and values as C strings: a zero byte ends them.
std::string UpToZero(const char* begin, const char* end)
{
    return std::string(begin, std::find(begin, end, '\0'));
}

// One line of the file, blanks around it already dropped.
struct Line {
    const char* begin;
    const char* end;
};

void TrimLine(Line& line)
{
    while (line.begin < line.end && IsBlank(*line.begin))
        ++line.begin;
    while (line.end > line.begin && IsBlank(line.end[-1]))
        --line.end;
}

// A header is a line that begins with "[" and has a "]" somewhere: the name
// lies between the "[" and the last "]"; what follows that "]" is dropped.
bool ReadHeader(const Line& line, std::string& name)
{
    if (*line.begin != '[')
        return false;
    const char* close = line.end;
    while (close > line.begin && close[-1] != ']')
        --close;
    if (close == line.begin)
        return false;
    Line inside{line.begin + 1, close - 1};
    TrimLine(inside);
    name = UpToZero(inside.begin, inside.end);
    return true;
}

// A key line: the name before the first "=", the value behind it; a line
// without "=" is a name alone.
ProfileEntry ReadEntry(const Line& line, std::size_t& rawNameLength)
{
    ProfileEntry entry;
    const char* equals = std::find(line.begin, line.end, '=');
    if (equals == line.end) {
        rawNameLength = static_cast<std::size_t>(line.end - line.begin);
        entry.name = UpToZero(line.begin, line.end);
        return entry;
    }
    const char* nameEnd = equals;
    while (nameEnd > line.begin && IsBlank(nameEnd[-1]))
        --nameEnd;
    const char* valueBegin = equals + 1;
    while (valueBegin < line.end && IsBlank(*valueBegin))
        ++valueBegin;
    rawNameLength = static_cast<std::size_t>(nameEnd - line.begin);
    entry.name = UpToZero(line.begin, nameEnd);
    entry.value = UpToZero(valueBegin, line.end);
    entry.hasValue = true;
    return entry;
}

// Whether one key, alone in its section, reads back as it was written: no
// blanks at the ends of the names or the value, no line break, no zero, no
// brackets or equals sign where a read would take them for something else.
bool ReadsBack(const std::string& section, const std::string& key, const std::string& value)
{
    const ProfileDocument alone =
        ProfileDocument::Parse("[" + section + "]" + kLineEnd + key + "=" + value + kLineEnd);
    const std::vector<ProfileSection>& sections = alone.Sections();
    if (section.empty() || key.empty() || sections.size() != 2 || sections[1].name != section ||
        sections[1].entries.size() != 1)
        return false;
    const ProfileEntry& entry = sections[1].entries[0];
    return entry.name == key && entry.hasValue && entry.value == value;
}

}  // namespace

ProfileDocument ProfileDocument::Parse(const std::string& bytes)
{
    ProfileDocument document;
    if (bytes.empty())
        return document;
    const char* cursor = bytes.data();
    const char* const end = bytes.data() + bytes.size();
    if (bytes.compare(0, kUtf8Marker.size(), kUtf8Marker) == 0) {
        document.utf8Marker_ = true;
        cursor += kUtf8Marker.size();
    }
    document.AppendSection("");
    // A line with an empty name right behind another one is dropped.
    bool previousIsNameless = false;
    bool hasPrevious = false;
    while (cursor < end) {
        Line line{cursor, cursor};
        while (line.end < end && !IsLineBreak(*line.end))
            ++line.end;
        cursor = line.end;
        while (cursor < end && IsLineBreak(*cursor))
            ++cursor;
        TrimLine(line);
        if (line.begin >= line.end)
            continue;
        std::string header;
        if (ReadHeader(line, header)) {
            document.AppendSection(header);
            hasPrevious = false;
            continue;
        }
        std::size_t rawNameLength = 0;
        ProfileEntry entry = ReadEntry(line, rawNameLength);
        if (rawNameLength == 0 && hasPrevious && previousIsNameless)
            continue;
        previousIsNameless = entry.name.empty();
        hasPrevious = true;
        document.sections_.back().entries.push_back(std::move(entry));
    }
    return document;
}

std::string ProfileDocument::Serialize() const
{
    std::string bytes = utf8Marker_ ? kUtf8Marker : std::string();
    for (const ProfileSection& section : sections_) {
        if (!section.name.empty())
            bytes += "[" + section.name + "]" + kLineEnd;
        for (const ProfileEntry& entry : section.entries) {
            bytes += entry.name;
            if (entry.hasValue)
                bytes += "=" + entry.value;
            bytes += kLineEnd;
        }
    }
    return bytes;
}

const ProfileEntry* ProfileDocument::Find(const std::string& section, const std::string& key) const
{
    const ProfileSection* found = FindSection(section);
    if (found == nullptr)
        return nullptr;
    const std::string wanted = WithoutBlanksAround(key);
    for (const ProfileEntry& entry : found->entries) {
        if (SameIgnoringAsciiCase(entry.name, wanted))
            return &entry;
    }
    return nullptr;
}

bool ProfileDocument::Assign(const std::string& section, const std::string& key,
                             const std::string& value)
{
    ProfileSection* target = FindSection(section);
    if (target == nullptr)
        target = &AppendSection(WithoutLeadingBlanks(section));
    const std::string wanted = WithoutBlanksAround(key);
    auto entry = std::find_if(
        target->entries.begin(), target->entries.end(),
        [&](const ProfileEntry& e) { return SameIgnoringAsciiCase(e.name, wanted); });
    if (entry == target->entries.end()) {
        target->entries.push_back(ProfileEntry{WithoutLeadingBlanks(key), "", false});
        entry = target->entries.end() - 1;
    }
    const std::string newValue = WithoutLeadingBlanks(value);
    if (entry->hasValue && entry->value == newValue)
        return false;
    entry->value = newValue;
    entry->hasValue = true;
    readsBack_ = readsBack_ && ReadsBack(target->name, entry->name, newValue);
    return true;
}

ProfileSection* ProfileDocument::FindSection(const std::string& name)
{
    const std::size_t position = SectionPosition(name);
    return position == kNoSection ? nullptr : &sections_[position];
}

const ProfileSection* ProfileDocument::FindSection(const std::string& name) const
{
    const std::size_t position = SectionPosition(name);
    return position == kNoSection ? nullptr : &sections_[position];
}

std::size_t ProfileDocument::SectionPosition(const std::string& name) const
{
    const auto found = firstSectionByName_.find(FoldedAsciiText(WithoutBlanksAround(name)));
    return found == firstSectionByName_.end() ? kNoSection : found->second;
}

ProfileSection& ProfileDocument::AppendSection(const std::string& name)
{
    sections_.push_back(ProfileSection{name, {}});
    IndexSection(sections_.size() - 1);
    return sections_.back();
}

void ProfileDocument::IndexSection(std::size_t position)
{
    // A new section may keep blanks behind its name until the file is read
    // again; it is found by its name without them, as a fresh read would.
    firstSectionByName_.emplace(FoldedAsciiText(WithoutBlanksAround(sections_[position].name)),
                                position);
}

}  // namespace platform
