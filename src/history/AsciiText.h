// Comparisons that ignore the case of the ASCII letters only, as the runtime's
// _stricmp does in the "C" locale: options and path prefixes compare so.
#pragma once

char AsciiLower(char c);

// True if both texts are equal but for the case of ASCII letters.
bool EqualIgnoringAsciiCase(const char* text, const char* other);
