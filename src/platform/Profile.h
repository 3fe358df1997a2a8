// The private-profile calls over an INI file, with the observable behaviour of
// the Windows calls of the same names. Each answers one call, as Windows does:
// buffers are the caller's, sizes are in bytes and include the terminators.
// Section, key and value are always given: the special meanings that the
// Windows calls give to a null one (listing, deleting) are not used here.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

// GetPrivateProfileSectionNamesA: the names, each ended by a zero byte, and an
// empty name behind the last. Returns the count of bytes copied, not counting
// the final zero.
std::uint32_t GetProfileSectionNames(char* buffer, std::uint32_t size, const std::string& path);

// GetPrivateProfileStringA for one key: the value, or `defaultValue` when the
// file, section or key is missing; cut to `size` - 1 characters.
std::uint32_t GetProfileString(const char* section, const char* key, const char* defaultValue,
                               char* buffer, std::uint32_t size, const std::string& path);

// GetPrivateProfileIntA: the value as an integer, or `defaultValue` when the
// key is missing.
std::uint32_t GetProfileInt(const char* section, const char* key, int defaultValue,
                            const std::string& path);

// WritePrivateProfileStringA for one key: creates the file, the section and
// the key as needed. False when the file can't be written.
bool WriteProfileString(const char* section, const char* key, const char* value,
                        const std::string& path);

// The whole content of a profile file as the calls above read it: never a
// write half done, nor any record that the platform keeps inside the file
// while it writes. False when the file can't be read.
bool ReadProfileFile(const std::string& path, std::string& content);

}  // namespace platform
