// The scripted machine's registry below HKEY_LOCAL_MACHINE. Key and value names
// match without regard to case and keep the case they were written in; keys
// and values enumerate sorted by their lower-cased names, whatever order a
// test writes. Keys come so on Windows too; values come so under Wine, while
// Windows hands them out in the order they were created.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace platform {
namespace scripted {

struct RegistryValueData {
    std::string name;
    std::uint32_t type = 0;
    std::string bytes;
};

struct RegistryKeyNode {
    std::string name;
    // Opening this key fails with this status when it isn't 0.
    std::int32_t openStatus = 0;
    std::map<std::string, RegistryKeyNode> subKeys;     // by lower-cased name
    std::map<std::string, RegistryValueData> values;    // by lower-cased name
};

class Registry {
public:
    // Makes the key and the keys above it; `path` is relative to
    // HKEY_LOCAL_MACHINE, its parts separated by backslashes.
    RegistryKeyNode& AddKey(const std::string& path);
    // Sets a value of any type from its raw bytes, making the key if needed.
    void SetValue(const std::string& path, const std::string& name, std::uint32_t type,
                  const std::string& bytes);
    // A REG_SZ value, its text and a terminating NUL.
    void SetString(const std::string& path, const std::string& name, const std::string& text);
    // A REG_DWORD value, four bytes, least significant first.
    void SetDword(const std::string& path, const std::string& name, std::uint32_t number);
    // Makes every open of the key fail with `status`.
    void RefuseKey(const std::string& path, std::int32_t status);

    // Loads a registry export, as regedit writes it ("REGEDIT4" or "Windows
    // Registry Editor Version 5.00", 8-bit text): keys below
    // HKEY_LOCAL_MACHINE, and values of the forms "text", dword: (one to
    // eight hexadecimal digits), hex:, hex(2): and hex(7):, continued over
    // lines by a trailing backslash.
    // False, with what was read so far kept, on a line it can't read.
    bool LoadExport(const std::string& text);

    // The key at `path`, or null.
    const RegistryKeyNode* FindKey(const std::string& path) const;

    // The keys that the registry calls opened; a handle is an index + 1.
    std::vector<const RegistryKeyNode*> openKeys;
    std::size_t closedKeys = 0;

private:
    RegistryKeyNode root_;
};

}  // namespace scripted
}  // namespace platform
