// How a system without GetUserNameExA answers it from a name it knows, so
// that every machine but the real Windows one answers alike.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace platform {

// Puts `name` into the caller's buffer as GetUserNameExA does: false, with the
// length word set to the size needed, when the name and its terminator don't
// fit the length word; otherwise true, with the length word set to the
// name's length. What is copied never exceeds `bufferSize`.
bool AnswerUserName(const std::string& name, char* buffer, std::size_t bufferSize,
                    std::uint32_t& length);

}  // namespace platform
