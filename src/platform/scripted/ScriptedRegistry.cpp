// The registry calls, answered from the scripted machine's registry.
#include "platform/scripted/ScriptedRegistry.h"

#include "platform/Registry.h"
#include "platform/scripted/ScriptedMachine.h"

namespace platform {
namespace scripted {

namespace {

std::string LowerCase(std::string text)
{
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

std::vector<std::string> KeyNames(const std::string& path)
{
    std::vector<std::string> names;
    std::string::size_type start = 0;
    while (start <= path.size()) {
        const std::string::size_type end = path.find('\\', start);
        const std::string part =
            path.substr(start, end == std::string::npos ? std::string::npos : end - start);
        if (!part.empty())
            names.push_back(part);
        if (end == std::string::npos)
            break;
        start = end + 1;
    }
    return names;
}

}  // namespace

RegistryKeyNode& Registry::AddKey(const std::string& path)
{
    RegistryKeyNode* node = &root_;
    for (const std::string& name : KeyNames(path)) {
        RegistryKeyNode& child = node->subKeys[LowerCase(name)];
        if (child.name.empty())
            child.name = name;
        node = &child;
    }
    return *node;
}

void Registry::SetValue(const std::string& path, const std::string& name, std::uint32_t type,
                        const std::string& bytes)
{
    RegistryValueData& value = AddKey(path).values[LowerCase(name)];
    value.name = name;
    value.type = type;
    value.bytes = bytes;
}

void Registry::SetString(const std::string& path, const std::string& name, const std::string& text)
{
    SetValue(path, name, kRegSz, text + std::string(1, '\0'));
}

void Registry::SetDword(const std::string& path, const std::string& name, std::uint32_t number)
{
    std::string bytes;
    for (int i = 0; i < 4; ++i)
        bytes.push_back(static_cast<char>((number >> (8 * i)) & 0xFF));
    SetValue(path, name, kRegDword, bytes);
}

void Registry::RefuseKey(const std::string& path, std::int32_t status)
{
    AddKey(path).openStatus = status;
}

const RegistryKeyNode* Registry::FindKey(const std::string& path) const
{
    const RegistryKeyNode* node = &root_;
    for (const std::string& name : KeyNames(path)) {
        const auto found = node->subKeys.find(LowerCase(name));
        if (found == node->subKeys.end())
            return nullptr;
        node = &found->second;
    }
    return node;
}

namespace {

Registry& CurrentRegistry()
{
    return CurrentMachine().registry;
}

const RegistryKeyNode* OpenedKey(RegistryKey key)
{
    const std::vector<const RegistryKeyNode*>& open = CurrentRegistry().openKeys;
    if (key == 0 || key > open.size())
        return nullptr;
    return open[key - 1];
}

// The entry at `index` of a map enumerated in its order, by the name it keeps.
template <typename Map>
std::int32_t NameAt(const Map& entries, std::uint32_t index, std::uint32_t nameSize,
                    std::string& name)
{
    name.clear();
    if (index >= entries.size())
        return kStatusNoMoreItems;
    auto entry = entries.begin();
    std::advance(entry, index);
    if (entry->second.name.size() + 1 > nameSize)
        return kStatusMoreData;
    name = entry->second.name;
    return kStatusSuccess;
}

}  // namespace

}  // namespace scripted

std::int32_t OpenMachineKey(const std::string& path, std::uint32_t, RegistryKey& key)
{
    scripted::Registry& registry = scripted::CurrentRegistry();
    key = 0;
    const scripted::RegistryKeyNode* node = registry.FindKey(path);
    if (node == nullptr)
        return kStatusFileNotFound;
    if (node->openStatus != kStatusSuccess)
        return node->openStatus;
    registry.openKeys.push_back(node);
    key = registry.openKeys.size();
    return kStatusSuccess;
}

std::int32_t QueryRegistryValue(RegistryKey key, const std::string& valueName,
                                std::uint32_t bufferSize, RegistryValue& value)
{
    const scripted::RegistryKeyNode* node = scripted::OpenedKey(key);
    if (node == nullptr)
        return kStatusInvalidHandle;
    const auto found = node->values.find(scripted::LowerCase(valueName));
    if (found == node->values.end())
        return kStatusFileNotFound;
    const scripted::RegistryValueData& data = found->second;
    value.type = data.type;
    value.length = static_cast<std::uint32_t>(data.bytes.size());
    value.data.clear();
    if (bufferSize == 0)
        return kStatusSuccess;
    if (data.bytes.size() > bufferSize)
        return kStatusMoreData;
    value.data = data.bytes;
    return kStatusSuccess;
}

std::int32_t EnumRegistryValueName(RegistryKey key, std::uint32_t index, std::uint32_t nameSize,
                                   std::string& name)
{
    const scripted::RegistryKeyNode* node = scripted::OpenedKey(key);
    if (node == nullptr)
        return kStatusInvalidHandle;
    return scripted::NameAt(node->values, index, nameSize, name);
}

std::int32_t EnumRegistrySubKeyName(RegistryKey key, std::uint32_t index, std::uint32_t nameSize,
                                    std::string& name)
{
    const scripted::RegistryKeyNode* node = scripted::OpenedKey(key);
    if (node == nullptr)
        return kStatusInvalidHandle;
    return scripted::NameAt(node->subKeys, index, nameSize, name);
}

void CloseRegistryKey(RegistryKey)
{
    ++scripted::CurrentRegistry().closedKeys;
}

void FormatStatusMessage(std::int32_t) {}

}  // namespace platform
