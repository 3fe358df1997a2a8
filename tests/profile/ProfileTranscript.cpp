// One fixed sequence of profile writes and reads through the platform's
// profile calls, written down as a transcript: every call with its result and
// the bytes that it left in the caller's buffer, and the bytes of the files.
// Built for every platform: the transcripts of the Windows calls and of the
// POSIX engine must be identical.
//
// The whole sequence runs in well under two seconds, and it must: Wine's
// calls trust their own parsed copy of a file, rather than the file, once
// that file is about two seconds old and unchanged.
//
// Usage: profile_transcript <work folder> <transcript file>
// The work folder is emptied first; paths are in the system's form.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/Profile.h"

namespace fs = std::filesystem;

namespace {

// Bytes that no scenario writes, so that what a call left untouched shows.
constexpr char kFill = '\xA5';
constexpr std::uint32_t kGuardBytes = 8;

std::string Shown(const std::string& bytes)
{
    static const char* const kHex = "0123456789ABCDEF";
    std::string shown;
    for (char c : bytes) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (c == '\\')
            shown += "\\\\";
        else if (c == '\r')
            shown += "\\r";
        else if (c == '\n')
            shown += "\\n";
        else if (c == '\t')
            shown += "\\t";
        else if (c == '\0')
            shown += "\\0";
        else if (byte < 0x20 || byte > 0x7e)
            shown += std::string("\\x") + kHex[byte >> 4] + kHex[byte & 15];
        else
            shown += c;
    }
    return shown;
}

// What a call left in a buffer: everything up to the last byte it wrote,
// and whether it kept out of the bytes behind the buffer.
std::string BufferShown(const std::vector<char>& buffer, std::uint32_t size)
{
    std::uint32_t touched = size;
    while (touched > 0 && buffer[touched - 1] == kFill)
        --touched;
    const bool guardIntact = std::all_of(buffer.begin() + size, buffer.end(),
                                         [](char c) { return c == kFill; });
    return "\"" + Shown(std::string(buffer.data(), touched)) + "\" (" + std::to_string(touched) +
           " of " + std::to_string(size) + " bytes touched" +
           (guardIntact ? "" : ", WRITTEN PAST THE END") + ")";
}

class Session {
public:
    Session(const std::string& folder, std::ostream& out) : folder_(folder), out_(out) {}

    std::string PathOf(const std::string& name) const { return folder_ + "\\" + name; }

    void Note(const std::string& text) { out_ << "\n# " << text << "\n"; }

    void Write(const std::string& section, const std::string& key, const std::string& value,
               const std::string& file)
    {
        const bool result = platform::WriteProfileString(section.c_str(), key.c_str(), value.c_str(),
                                                         PathOf(file));
        out_ << "write " << file << " [" << Shown(section) << "] \"" << Shown(key) << "\" = \""
             << Shown(value) << "\" -> " << (result ? "true" : "false") << "\n";
    }

    void Read(const std::string& section, const std::string& key, const std::string& fallback,
              std::uint32_t size, const std::string& file)
    {
        std::vector<char> buffer(size + kGuardBytes, kFill);
        const std::uint32_t result = platform::GetProfileString(
            section.c_str(), key.c_str(), fallback.c_str(), buffer.data(), size, PathOf(file));
        out_ << "read " << file << " [" << Shown(section) << "] \"" << Shown(key) << "\" default \""
             << Shown(fallback) << "\" size " << size << " -> " << result << " "
             << BufferShown(buffer, size) << "\n";
    }

    void ReadInt(const std::string& section, const std::string& key, int fallback,
                 const std::string& file)
    {
        const std::uint32_t result =
            platform::GetProfileInt(section.c_str(), key.c_str(), fallback, PathOf(file));
        out_ << "read int " << file << " [" << Shown(section) << "] \"" << Shown(key)
             << "\" default " << fallback << " -> " << result << "\n";
    }

    void Names(std::uint32_t size, const std::string& file)
    {
        std::vector<char> buffer(size + kGuardBytes, kFill);
        const std::uint32_t result =
            platform::GetProfileSectionNames(buffer.data(), size, PathOf(file));
        out_ << "names " << file << " size " << size << " -> " << result << " "
             << BufferShown(buffer, size) << "\n";
    }

    void Put(const std::string& file, const std::string& bytes)
    {
        std::ofstream stream(platform::SystemPath(PathOf(file)), std::ios::binary | std::ios::trunc);
        stream << bytes;
        out_ << "put " << file << " \"" << Shown(bytes) << "\"\n";
    }

    void Remove(const std::string& file)
    {
        std::error_code ignored;
        fs::remove(platform::SystemPath(PathOf(file)), ignored);
        out_ << "remove " << file << "\n";
    }

    void MakeFolder(const std::string& name)
    {
        fs::create_directories(platform::SystemPath(PathOf(name)));
        out_ << "folder " << name << "\n";
    }

    void Dump(const std::string& file)
    {
        const std::string path = platform::SystemPath(PathOf(file));
        std::ifstream stream(path, std::ios::binary);
        if (!stream) {
            out_ << "file " << file << ": (none)\n";
            return;
        }
        const std::string bytes((std::istreambuf_iterator<char>(stream)),
                                std::istreambuf_iterator<char>());
        out_ << "file " << file << ": \"" << Shown(bytes) << "\"\n";
    }

    // Every entry of the work folder at the end, in name order.
    void DumpAll()
    {
        Note("what the work folder holds at the end");
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(platform::SystemPath(folder_)))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        for (const std::string& name : names) {
            if (fs::is_directory(platform::SystemPath(PathOf(name))))
                out_ << "folder " << name << "\n";
            else
                Dump(name);
        }
    }

private:
    std::string folder_;
    std::ostream& out_;
};

const std::vector<std::string> kEventKeys = {
    "Event_ID", "Command_Line", "Start_Time", "End_Time", "Action", "Type",
    "Product", "Version", "Service_Level", "Path", "Copy_Name", "Complete_Flag",
    "Log_File_Name", "Trace_File", "Response_File", "Event_Log_File", "Result"};

void MissingFile(Session& s)
{
    s.Note("a file that doesn't exist, in a folder that does");
    const std::string f = "never.ini";
    s.Names(64, f);
    s.Read("History", "Count", "", 256, f);
    s.Read("History", "Count", "def", 256, f);
    s.Read("History", "Count", "  def  ", 256, f);
    s.Read("History", "Count", "\"quoted default\"", 256, f);
    s.Read("History", "Count", "'single'  ", 256, f);
    s.Read("History", "Count", "   ", 256, f);
    s.Read("History", "Count", "def\t", 256, f);
    s.Read("History", "Count", "\"qd\"", 3, f);
    s.ReadInt("History", "Count", 0, f);
    s.ReadInt("History", "Count", -3, f);
    s.Dump(f);
}

void MissingFolder(Session& s)
{
    s.Note("a file in a folder that doesn't exist");
    const std::string f = "no-such-folder\\x.ini";
    s.Names(64, f);
    s.Read("A", "b", "\"quoted default\"  ", 256, f);
    s.ReadInt("A", "b", 5, f);
    s.Write("A", "b", "1", f);
    s.Read("A", "b", "def", 256, f);
    s.Dump(f);
    s.Note("a path that is a folder");
    s.MakeFolder("a-folder.ini");
    s.Names(64, "a-folder.ini");
    s.Read("A", "b", "\"quoted default\"", 256, "a-folder.ini");
    s.ReadInt("A", "b", 7, "a-folder.ini");
    s.Write("A", "b", "1", "a-folder.ini");
}

void NewStore(Session& s)
{
    s.Note("a new store and one event, written as the recorder writes them");
    const std::string f = "History.ini";
    s.Write("History", "Count", "0", f);
    s.Dump(f);
    for (const std::string& key : kEventKeys)
        s.Write("EVT-1", key, key == "Event_ID" ? "EVT-1" : key == "Copy_Name" ? "(Unknown)" : "", f);
    s.Write("EVT-1", "Log_File_Name", "(none)", f);
    s.Write("EVT-1", "Start_Time", "20240105 10:11:12", f);
    s.Write("History", "Count", "1", f);
    s.Dump(f);
    s.Write("EVT-2", "Event_ID", "EVT-2", f);
    s.Write("EVT-1", "End_Time", "20240105 10:20:00", f);
    s.Write("EVT-1", "Complete_Flag", "TRUE", f);
    s.Write("EVT-1", "Wi_Log_File", "late key", f);
    s.Dump(f);
    for (const std::string& key : kEventKeys)
        s.Read("EVT-1", key, "", 256, f);
    s.Read("EVT-1", "Wi_Log_File", "", 256, f);
    s.Read("EVT-1", "Missing_Key", "", 256, f);
    s.Read("EVT-1", "End_Time", "default", 256, f);
    s.Read("EVT-1", "Result", "default", 256, f);
    s.Names(10240, f);
}

void OtherCase(Session& s)
{
    s.Note("sections and keys named in other case");
    const std::string f = "History.ini";
    s.Write("HISTORY", "count", "2", f);
    s.Write("evt-1", "RESULT", "done", f);
    s.Write("Evt-1", "new_key", "added", f);
    s.Dump(f);
    s.Read("history", "COUNT", "", 256, f);
    s.ReadInt("hIsToRy", "cOuNt", 0, f);
    s.Read("EVT-1", "result", "", 256, f);
    s.Read("evt-1", "NEW_KEY", "", 256, f);
    s.Note("an event named History writes beside Count");
    s.Write("History", "Event_ID", "History", f);
    s.Write("History", "Copy_Name", "(Unknown)", f);
    s.Dump(f);
    s.Names(10240, f);
}

void BlanksAndQuotes(Session& s)
{
    s.Note("blanks around names and values, quotes around values");
    const std::string f = "blanks.ini";
    s.Write("Plain", "key", "value", f);
    s.Write("  Plain  ", "  key  ", "  spaced value  ", f);
    s.Write("  New Section  ", "  new key  ", "  new value  ", f);
    s.Write("Plain", "tabbed", "\ttab value\t", f);
    s.Dump(f);
    s.Read("Plain", "key", "", 256, f);
    s.Read(" plain ", " KEY ", "", 256, f);
    s.Read("New Section", "new key", "", 256, f);
    s.Read("Plain", "tabbed", "", 256, f);
    s.Names(256, f);
    s.Write("Plain", "key", "  spaced value  ", f);
    s.Write("New Section", "new key", "new value", f);
    s.Dump(f);
    s.Write("Quotes", "double", "\"abcd\"", f);
    s.Write("Quotes", "single", "'abcd'", f);
    s.Write("Quotes", "mixed", "\"abcd'", f);
    s.Write("Quotes", "lone", "\"", f);
    s.Write("Quotes", "pair", "\"\"", f);
    s.Write("Quotes", "padded", "\" padded \"", f);
    s.Write("Quotes", "open", "\"open", f);
    s.Write("Quotes", "close", "close\"", f);
    s.Write("Quotes", "empty", "", f);
    s.Dump(f);
    for (std::uint32_t size : {256u, 7u, 6u, 5u, 4u, 3u, 2u, 1u})
        s.Read("Quotes", "double", "", size, f);
    for (const char* key : {"single", "mixed", "lone", "pair", "padded", "open", "close"})
        s.Read("Quotes", key, "", 256, f);
    s.Read("Quotes", "pair", "def", 2, f);
    s.Read("Quotes", "empty", "def", 256, f);
    s.ReadInt("Quotes", "empty", 9, f);
    s.Note("an unchanged value leaves the file alone");
    s.Put("untouched.ini", "  [ S ]  \r\n  k  =  v  \r\n\r\n; note\r\n");
    s.Write("s", "K", "v", "untouched.ini");
    s.Write("S", "k", "  v", "untouched.ini");
    s.Dump("untouched.ini");
    s.Write("S", "k", "v  ", "untouched.ini");
    s.Dump("untouched.ini");
}

void LongValues(Session& s)
{
    s.Note("a value of 300 characters");
    const std::string f = "long.ini";
    std::string value;
    for (int i = 0; i < 300; ++i)
        value += static_cast<char>('a' + i % 26);
    s.Write("EVT", "Path", value, f);
    s.Dump(f);
    for (std::uint32_t size : {256u, 255u, 299u, 300u, 301u, 302u, 2u, 1u})
        s.Read("EVT", "Path", "", size, f);
    s.Write("EVT", "Quoted", "\"" + value + "\"", f);
    for (std::uint32_t size : {256u, 301u, 302u, 303u})
        s.Read("EVT", "Quoted", "", size, f);
    s.Write("EVT", "Digits", "123456789012345678901234567890123", f);
    s.ReadInt("EVT", "Digits", 0, f);
    s.Read("EVT", "Missing", value, 256, f);
    s.Note("size 0 leaves the buffer alone");
    s.Read("EVT", "Path", "", 0, f);
    s.Names(0, f);
}

std::string SectionName(int index)
{
    std::string name = "Event-" + std::to_string(1000 + index) + "-";
    while (name.size() < 36)
        name += static_cast<char>('A' + (index + static_cast<int>(name.size())) % 26);
    return name;
}

void ManySections(Session& s)
{
    s.Note("section names that pass a buffer of 10240 bytes");
    const std::string f = "many.ini";
    std::string bytes = "[History]\r\nCount=300\r\n";
    for (int i = 0; i < 300; ++i)
        bytes += "[" + SectionName(i) + "]\r\nEvent_ID=" + SectionName(i) + "\r\n";
    s.Put(f, bytes);
    s.Write("Last Section", "Event_ID", "Last Section", f);
    // 300 names of 36 characters, "History" and "Last Section": 11121 bytes
    // with their zeros, 11122 with the zero behind the last.
    for (std::uint32_t size : {10240u, 10239u, 10238u, 10237u, 11120u, 11121u, 11122u, 11123u, 11124u})
        s.Names(size, f);
    s.Note("a short list at every buffer size");
    s.Put("three.ini", "[abc]\r\n[de]\r\n[fghij]\r\n");
    for (std::uint32_t size = 16; size > 0; --size)
        s.Names(size, "three.ini");
}

void ReservedCharacters(Session& s)
{
    s.Note("characters that the format reserves, passed as they stand");
    const std::string f = "reserved.ini";
    s.Write("a]b", "k", "1", f);
    s.Write("x=y", "k", "2", f);
    s.Write("[bracketed]", "k", "3", f);
    s.Write("S", "k=ey", "3", f);
    s.Write("S", "k=ey", "4", f);
    s.Write("S", "[x]", "5", f);
    s.Write("S", ";c", "6", f);
    s.Write("S", "v", "line1\r\nz=line2", f);
    s.Write("E\r\nX", "k", "7", f);
    s.Write("=start", "k", "8", f);
    s.Dump(f);
    s.Names(1024, f);
    s.Read("a]b", "k", "def", 256, f);
    s.Read("x=y", "k", "def", 256, f);
    s.Read("[bracketed]", "k", "def", 256, f);
    s.Read("bracketed", "k", "def", 256, f);
    s.Read("S", "k=ey", "def", 256, f);
    s.Read("S", "k", "def", 256, f);
    s.Read("S", "[x]", "def", 256, f);
    s.Read("x", "k", "def", 256, f);
    s.Read("S", ";c", "def", 256, f);
    s.Read("S", "v", "def", 256, f);
    s.Read("S", "z", "def", 256, f);
    s.Read("E\r\nX", "k", "def", 256, f);
    s.Read("=start", "k", "def", 256, f);
}

void CaseTwins(Session& s)
{
    s.Note("two sections whose names differ only in case");
    const std::string f = "twins.ini";
    s.Put(f, "[Alpha]\r\nk=first\r\n[ALPHA]\r\nk=second\r\nonly=second\r\n");
    s.Names(256, f);
    s.Read("alpha", "k", "", 256, f);
    s.Read("ALPHA", "only", "def", 256, f);
    s.Write("ALPHA", "k", "changed", f);
    s.Write("ALPHA", "only", "added", f);
    s.Write("alpha ", "k", "again", f);
    s.Dump(f);
}

void NoSections(Session& s)
{
    s.Note("a file with no sections");
    const std::string f = "nosections.ini";
    s.Put(f, "k=v\r\nk2 = v2\r\n");
    s.Names(256, f);
    s.Read("", "k", "def", 256, f);
    s.Read("  ", "k2", "def", 256, f);
    s.Read("Any", "k", "def", 256, f);
    s.Write("A", "b", "c", f);
    s.Write("", "k3", "v3", f);
    s.Dump(f);
    s.Note("a key in the section without a name, in a new file");
    s.Write("", "k", "v", "nameless.ini");
    s.Write("  ", "k2", "v2", "nameless.ini");
    s.Write("A", "b", "c", "nameless.ini");
    s.Write("", "k4", "v4", "nameless.ini");
    s.Dump("nameless.ini");
    s.Read("", "k4", "def", 256, "nameless.ini");
    s.Note("a key with an empty name");
    s.Write("E", "", "nameless key", "emptykey.ini");
    s.Write("E", "  ", "again", "emptykey.ini");
    s.Dump("emptykey.ini");
    s.Read("E", "", "def", 256, "emptykey.ini");
}

void ExistingFormatting(Session& s)
{
    s.Note("what a write does to an existing file's formatting");
    const std::string f = "formatted.ini";
    s.Put(f,
          "; top comment\r\n  lead=1  \r\n\r\n[ Sec A ]  trailing text\r\n"
          "  key one  =  value one  \r\n; comment = with eq\r\nnoequals\r\n\r\n\r\n"
          "=emptyname1\r\n=emptyname2\r\n[B]\rcr=only\r\rx=1\n[Sec A]\r\ndup=2\r\n"
          "[]\r\nnn=1\r\n[   ]\r\nmm=2\r\n[noclose\r\nafter=1\r\n\x1a");
    s.Names(1024, f);
    s.Read("Sec A", "key one", "", 256, f);
    s.Read("sec a", "KEY ONE", "", 256, f);
    s.Read("Sec A", "dup", "def", 256, f);
    s.Read("Sec A", "noequals", "def", 256, f);
    s.Read("Sec A", "; comment", "def", 256, f);
    s.Read("Sec A", "", "def", 256, f);
    s.Read("", "", "def", 256, f);
    s.Read("", "lead", "def", 256, f);
    s.Read("", "nn", "def", 256, f);
    s.Read("B", "cr", "def", 256, f);
    s.Read("B", "x", "def", 256, f);
    s.Read("noclose", "after", "def", 256, f);
    s.Write("Sec A", "key one", "value one", f);
    s.Dump(f);
    s.Write("Sec A", "KEY ONE", "changed", f);
    s.Dump(f);
    s.Write("Sec A", "noequals", "now", f);
    s.Write("B", "new", "1", f);
    s.Write("", "top", "1", f);
    s.Dump(f);
}

void Numbers(Session& s)
{
    s.Note("numbers");
    const std::string f = "numbers.ini";
    s.Put(f,
          "[I]\r\na=42\r\nb=-5\r\nc=0x1F\r\nd=0X1F\r\ne=012\r\nf=0b101\r\ng=0o17\r\nh=12abc\r\n"
          "i=abc\r\nj=+7\r\nk=\"33\"\r\nl=4294967297\r\nm=123456789012345678901234567890123\r\n"
          "n= \r\no=\" 9\"\r\np=-\r\nq=0x\r\nr=1 2\r\ns=2147483648\r\nt=-0x10\r\nu=0b2\r\n");
    for (const char* key : {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m", "n",
                            "o", "p", "q", "r", "s", "t", "u", "missing"})
        s.ReadInt("I", key, -1, f);
}

void SpecialFiles(Session& s)
{
    s.Note("an empty file, a file of blanks, a file with a UTF-8 mark");
    s.Put("empty.ini", "");
    s.Names(16, "empty.ini");
    s.Read("", "k", "def", 16, "empty.ini");
    s.Write("A", "b", "c", "empty.ini");
    s.Dump("empty.ini");
    s.Put("blank.ini", " \r\n\t\r\n");
    s.Write("A", "b", "c", "blank.ini");
    s.Dump("blank.ini");
    s.Put("marked.ini", "\xEF\xBB\xBF[A]\r\nb=c\r\n");
    s.Names(16, "marked.ini");
    s.Read("A", "b", "def", 16, "marked.ini");
    s.Write("A", "d", "e", "marked.ini");
    s.Dump("marked.ini");
    s.Note("a file removed between calls");
    s.Write("A", "b", "c", "removed.ini");
    s.Read("A", "b", "def", 16, "removed.ini");
    s.Remove("removed.ini");
    s.Read("A", "b", "def", 16, "removed.ini");
    s.Names(16, "removed.ini");
    s.Write("A", "x", "y", "removed.ini");
    s.Dump("removed.ini");
}

void RunScenarios(Session& s)
{
    MissingFile(s);
    MissingFolder(s);
    NewStore(s);
    OtherCase(s);
    BlanksAndQuotes(s);
    LongValues(s);
    ManySections(s);
    ReservedCharacters(s);
    CaseTwins(s);
    NoSections(s);
    ExistingFormatting(s);
    Numbers(s);
    SpecialFiles(s);
    s.DumpAll();
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: profile_transcript <work folder> <transcript file>\n";
        return 2;
    }
    const std::string folder = argv[1];
    std::error_code ignored;
    fs::remove_all(platform::SystemPath(folder), ignored);
    fs::create_directories(platform::SystemPath(folder));
    std::ofstream transcript(platform::SystemPath(argv[2]), std::ios::binary | std::ios::trunc);
    if (!transcript) {
        std::cerr << "cannot write " << argv[2] << "\n";
        return 2;
    }
    Session session(folder, transcript);
    RunScenarios(session);
    transcript.close();
    return transcript ? 0 : 1;
}
