#include "platform/common/NameAnswer.h"

#include <algorithm>
#include <cstring>

namespace platform {

bool AnswerUserName(const std::string& name, char* buffer, std::size_t bufferSize,
                    std::uint32_t& length)
{
    if (name.size() + 1 > length) {
        length = static_cast<std::uint32_t>(name.size() + 1);
        return false;
    }
    length = static_cast<std::uint32_t>(name.size());
    if (bufferSize == 0)
        return true;
    const std::size_t copied = std::min(name.size(), bufferSize - 1);
    std::memcpy(buffer, name.c_str(), copied);
    buffer[copied] = '\0';
    return true;
}

}  // namespace platform
