#include "history/AsciiText.h"

char AsciiLower(char c)
{
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

bool EqualIgnoringAsciiCase(const char* text, const char* other)
{
    for (; *text != '\0' && *other != '\0'; ++text, ++other) {
        if (AsciiLower(*text) != AsciiLower(*other))
            return false;
    }
    return *text == *other;
}
