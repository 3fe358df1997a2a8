// Conversions between the system's wide (UTF-16) text and its narrow text in
// the ANSI code page, into buffers of fixed size.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

// The status of a conversion whose buffer is too small.
constexpr std::uint32_t kStatusInsufficientBuffer = 122;

// WideCharToMultiByte(CP_ACP, 0, wide, -1, buffer, bufferSize, 0, 0): the whole
// text and its terminator into `buffer`. 0 on success, else the error code.
// What a failed call leaves in the buffer is not settled.
std::uint32_t WideToNarrow(const std::u16string& wide, char* buffer, int bufferSize);

// MultiByteToWideChar(CP_ACP, 0, text, -1, ...) into a buffer of `capacity`
// wide characters, terminator included. False when it doesn't fit, and
// `wide` is then empty.
bool NarrowToWide(const std::string& text, std::size_t capacity, std::u16string& wide);

}  // namespace platform
