// An INI file as the Windows private-profile calls understand it: the parse of
// its bytes into sections and keys, the lookups of a key, the change that one
// WritePrivateProfileStringA makes, and the bytes that such a write leaves.
// Pure logic over strings: the file itself is the profile engine's business
// on Linux, and the companion report reads History.ini from an archive by it
// on every platform.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace platform {

// One line of a section: a key, with a value if the line had an equals sign.
struct ProfileEntry {
    std::string name;
    std::string value;
    bool hasValue = false;
};

// A section and its lines in file order. The lines in front of the first
// header form a section without a name, which is written without a header.
struct ProfileSection {
    std::string name;
    std::vector<ProfileEntry> entries;
};

class ProfileDocument {
public:
    // Reads the file's bytes. Blank lines are dropped, names and values are
    // trimmed, "\r", "\n" and any run of them end a line.
    static ProfileDocument Parse(const std::string& bytes);

    // The file as a write leaves it: every line rewritten as "[name]" or
    // "name=value" (or "name" for a line without "="), each ended by "\r\n".
    std::string Serialize() const;

    // The line that a read of `key` in `section` finds, or null. Names compare
    // without regard to case (ASCII letters) or to blanks around them; the
    // first section and the first key of that name win.
    const ProfileEntry* Find(const std::string& section, const std::string& key) const;

    // What a write of `value` does: the key is created at the end of its
    // section, the section at the end of the file, blanks in front of names
    // and value are dropped. False when the key already holds that exact
    // value, so that there is nothing to write.
    bool Assign(const std::string& section, const std::string& key, const std::string& value);

    const std::vector<ProfileSection>& Sections() const { return sections_; }

    // Whether the document is what a fresh read of its own bytes would give:
    // true after Parse, and after every Assign whose section, key and value
    // read back as they stand. Otherwise only a read of the bytes tells.
    bool ReadsBackAsItIs() const { return readsBack_; }

private:
    static constexpr std::size_t kNoSection = static_cast<std::size_t>(-1);

    ProfileSection* FindSection(const std::string& name);
    const ProfileSection* FindSection(const std::string& name) const;
    std::size_t SectionPosition(const std::string& name) const;
    ProfileSection& AppendSection(const std::string& name);
    void IndexSection(std::size_t position);

    bool utf8Marker_ = false;
    bool readsBack_ = true;
    std::vector<ProfileSection> sections_;
    // Folded name -> position of the first section of that name.
    std::unordered_map<std::string, std::size_t> firstSectionByName_;
};

}  // namespace platform
