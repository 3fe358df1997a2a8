// Text conversions on Windows, in the system's ANSI code page.
#include "platform/TextConversion.h"

#include <windows.h>

#include <vector>

namespace platform {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "wide text is UTF-16 on Windows");

std::uint32_t WideToNarrow(const std::u16string& wide, char* buffer, int bufferSize)
{
    const int written =
        WideCharToMultiByte(CP_ACP, 0, reinterpret_cast<const wchar_t*>(wide.c_str()), -1, buffer,
                            bufferSize, nullptr, nullptr);
    return written == 0 ? GetLastError() : 0;
}

bool NarrowToWide(const std::string& text, std::size_t capacity, std::u16string& wide)
{
    std::vector<wchar_t> buffer(capacity + 1, L'\0');
    const int written = MultiByteToWideChar(CP_ACP, 0, text.c_str(), -1, buffer.data(),
                                            static_cast<int>(capacity));
    wide = written == 0 ? std::u16string()
                        : std::u16string(reinterpret_cast<const char16_t*>(buffer.data()));
    return written != 0;
}

}  // namespace platform
