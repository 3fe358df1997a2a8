// History.ini access: one path, and every operation goes to the platform's
// profile calls. Nothing is cached here.
#pragma once

#include <string>
#include <vector>

class CIniFile {
public:
    explicit CIniFile(const std::string& path);

    // Section names in file order, within the 10240-byte buffer of the call.
    std::vector<std::string> GetSectionNames();
    std::string GetString(const std::string& section, const std::string& key,
                          const std::string& defaultValue, int size);
    // Always 0: the platform's result is dropped.
    int WriteString(const std::string& section, const std::string& key, const std::string& value);
    int GetInt(const std::string& section, const std::string& key, int& defaultValue);
    int WriteInt(const std::string& section, const std::string& key, int& value);

    std::string Path;
};
