// The history's texts as the report writes them, in UTF-8. The recorder
// writes its files in the system's code page: UTF-8 on Linux, the ANSI code
// page on Windows (Windows-1252 where Western European languages are set).
// Each byte of a single-byte code page maps to one character by the code
// page's published table; a byte that the code page leaves undefined, and a
// sequence that isn't UTF-8 where UTF-8 is read, becomes U+FFFD.
#pragma once

#include <string>

class CTextDecoder {
public:
    static constexpr int kUtf8 = 65001;
    static constexpr int kWindows1252 = 1252;

    // Whether the report knows the code page: 437 (the DOS code page of the
    // United States), 1250 (Central European), 1251 (Cyrillic), 1252 (Western
    // European) and 65001 (UTF-8).
    static bool Knows(int codePage);

    explicit CTextDecoder(int codePage = kWindows1252);

    int CodePage() const { return codePage_; }
    // "windows-1252", "utf-8", ...: the name by which the JSON form says it.
    const char* Name() const;
    // The text in UTF-8. Control characters are kept: the forms decide what
    // becomes of them.
    std::string Utf8(const std::string& bytes) const;

private:
    int codePage_;
    const unsigned short* high_;
};

// UTF-8 text as the page and the JSON form take it: whatever isn't UTF-8 and
// every control character other than the tab (C0, DEL and C1) as U+FFFD.
std::string CleanUtf8(const std::string& text);
