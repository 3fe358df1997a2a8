// The reads that every registry-reading collector goes through, all below
// HKEY_LOCAL_MACHINE, silent about every failure: a key that is absent, one
// that can't be opened and one that is empty all read as empty. Keys opened
// here are never closed. Beside them, the process-wide selector of the
// product's registry layout, and the wide-to-narrow text helper.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// The data buffer of a value read, terminator included, so that a text value
// of more than 99 bytes reads as empty; and the name buffer of the
// enumerations, so that a name of 256 bytes or more ends them.
inline constexpr std::uint32_t kRegistryValueBufferSize = 100;
inline constexpr std::uint32_t kRegistryNameSize = 256;

// The layouts of the product's keys: before V9 one copy below the maker's key,
// from V9 on one key per copy.
constexpr int LAYOUT_PRE_V9 = 0;
constexpr int LAYOUT_V9 = 1;

// The root of the product's keys for the current layout; every value other
// than LAYOUT_PRE_V9 reads as LAYOUT_V9.
std::string GetRegistryRoot();
int GetRegistryLayout();
void SetRegistryLayout(const int& layout);

// Which view of the registry a read sees on 64-bit Windows: the program's own
// (for the x86 build, the 32-bit view of the keys that Windows redirects), or
// the machine's native one. Elsewhere both are the one registry.
enum class RegistryView { Own, Native };

// The value as text: REG_SZ as it stands (up to 99 characters), REG_DWORD as
// signed decimal, every other type and every failure empty.
std::string ReadRegistryValue(const std::string& key, const std::string& valueName,
                              RegistryView view = RegistryView::Own);

// The value names and the subkey names of a key, in the registry's order.
std::vector<std::string> EnumRegistryValues(const std::string& key);
std::vector<std::string> EnumRegistrySubKeys(const std::string& key,
                                             RegistryView view = RegistryView::Own);

// Converts the whole wide text into `buffer` in the system's code page: 0, or
// the error code when nothing fits, and the buffer then holds an empty name.
int WideToMultiByte(const std::u16string& wide, char* buffer, int bufferSize);
