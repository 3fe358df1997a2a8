#include "inventory/RegistryReader.h"

#include <cstdint>
#include <cstring>

#include "platform/Registry.h"
#include "platform/TextConversion.h"

namespace {

int registryLayout = LAYOUT_V9;

// Opened with KEY_READ and KEY_SET_VALUE: an account that may not write the
// key can't read it either. The value read and the subkey enumeration pass a
// failed open's status through the system's message text, which nobody reads.
enum class OnFailure { Quiet, FormatMessage };

bool OpenForReading(const std::string& key, platform::RegistryKey& handle, OnFailure onFailure,
                    RegistryView view = RegistryView::Own)
{
    const std::uint32_t access = platform::kKeyReadAndSetValue |
                                 (view == RegistryView::Native ? platform::kKeyNativeView : 0);
    const std::int32_t status = platform::OpenMachineKey(key, access, handle);
    if (status == platform::kStatusSuccess)
        return true;
    if (onFailure == OnFailure::FormatMessage)
        platform::FormatStatusMessage(status);
    return false;
}

// A REG_DWORD in decimal, as a signed number.
std::string SignedDecimal(const std::string& bytes)
{
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4 && i < bytes.size(); ++i)
        number |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    return std::to_string(static_cast<std::int32_t>(number));
}

// The text of a REG_SZ read into the 100-byte buffer, up to its first NUL. A
// value that doesn't fit the buffer leaves it as it was cleared: empty.
std::string TextOf(platform::RegistryKey handle, const std::string& valueName)
{
    platform::RegistryValue value;
    platform::QueryRegistryValue(handle, valueName, kRegistryValueBufferSize, value);
    const std::string& data = value.data;
    return data.substr(0, data.find('\0'));
}

std::string NumberOf(platform::RegistryKey handle, const std::string& valueName)
{
    platform::RegistryValue value;
    platform::QueryRegistryValue(handle, valueName, sizeof(std::uint32_t), value);
    return SignedDecimal(value.data);
}

template <typename EnumerateName>
std::vector<std::string> EnumerateNames(platform::RegistryKey handle, EnumerateName enumerate)
{
    std::vector<std::string> names;
    for (std::uint32_t index = 0;; ++index) {
        std::string name;
        if (enumerate(handle, index, kRegistryNameSize, name) != platform::kStatusSuccess)
            return names;
        names.push_back(name);
    }
}

}  // namespace

std::string GetRegistryRoot()
{
    if (registryLayout == LAYOUT_PRE_V9)
        return std::string("SOFTWARE\\TAQ");
    return std::string("SOFTWARE\\TAQ\\ZOR\\InstalledCopies");
}

int GetRegistryLayout()
{
    return registryLayout;
}

void SetRegistryLayout(const int& layout)
{
    registryLayout = layout;
}

// The type is asked first, without a buffer; its status isn't looked at.
std::string ReadRegistryValue(const std::string& key, const std::string& valueName,
                              RegistryView view)
{
    platform::RegistryKey handle = 0;
    if (!OpenForReading(key, handle, OnFailure::FormatMessage, view))
        return std::string();
    platform::RegistryValue kind;
    platform::QueryRegistryValue(handle, valueName, 0, kind);
    if (kind.type == platform::kRegSz)
        return TextOf(handle, valueName);
    if (kind.type == platform::kRegDword)
        return NumberOf(handle, valueName);
    return std::string();
}

std::vector<std::string> EnumRegistryValues(const std::string& key)
{
    platform::RegistryKey handle = 0;
    if (!OpenForReading(key, handle, OnFailure::Quiet))
        return std::vector<std::string>();
    return EnumerateNames(handle, platform::EnumRegistryValueName);
}

std::vector<std::string> EnumRegistrySubKeys(const std::string& key, RegistryView view)
{
    platform::RegistryKey handle = 0;
    if (!OpenForReading(key, handle, OnFailure::FormatMessage, view))
        return std::vector<std::string>();
    return EnumerateNames(handle, platform::EnumRegistrySubKeyName);
}

int WideToMultiByte(const std::u16string& wide, char* buffer, int bufferSize)
{
    const std::uint32_t error = platform::WideToNarrow(wide, buffer, bufferSize);
    if (error != 0 && bufferSize > 0)
        buffer[0] = '\0';
    return static_cast<int>(error);
}
