#include "report/CJsonWriter.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace {

// The escape of a character that JSON text can't hold as it is, written into
// `escape`; false for any other.
bool EscapeOf(unsigned char c, char (&escape)[7])
{
    static const char kHex[] = "0123456789abcdef";
    const char* named = nullptr;
    switch (c) {
    case '"': named = "\\\""; break;
    case '\\': named = "\\\\"; break;
    case '\b': named = "\\b"; break;
    case '\f': named = "\\f"; break;
    case '\n': named = "\\n"; break;
    case '\r': named = "\\r"; break;
    case '\t': named = "\\t"; break;
    default:
        if (c >= 0x20)
            return false;
        const char code[7] = {'\\', 'u', '0', '0', kHex[c >> 4], kHex[c & 0xF], '\0'};
        std::copy(code, code + 7, escape);
        return true;
    }
    std::copy(named, named + 3, escape);
    return true;
}

}  // namespace

CJsonWriter::CJsonWriter(std::ostream& out, std::size_t indent) : out_(out), indent_(indent) {}

CJsonWriter& CJsonWriter::Object()
{
    return Open('{', '}');
}

CJsonWriter& CJsonWriter::Array()
{
    return Open('[', ']');
}

CJsonWriter& CJsonWriter::Open(char opening, char closing)
{
    Place();
    out_ << opening;
    levels_.push_back(Level{closing, true});
    return *this;
}

CJsonWriter& CJsonWriter::End()
{
    const Level level = levels_.back();
    levels_.pop_back();
    if (!level.empty)
        NewLine(Depth());
    out_ << level.closing;
    return *this;
}

CJsonWriter& CJsonWriter::Key(std::string_view key)
{
    Level& level = levels_.back();
    out_ << (level.empty ? "" : ",");
    level.empty = false;
    NewLine(Depth());
    Quoted(key);
    out_ << ": ";
    named_ = true;
    return *this;
}

void CJsonWriter::Place()
{
    if (named_ || levels_.empty()) {
        named_ = false;
        return;
    }
    Level& level = levels_.back();
    out_ << (level.empty ? "" : ",");
    level.empty = false;
    NewLine(Depth());
}

void CJsonWriter::NewLine(std::size_t blanks)
{
    out_ << '\n';
    static const std::string kBlanks(64, ' ');
    for (; blanks > kBlanks.size(); blanks -= kBlanks.size())
        out_ << kBlanks;
    out_.write(kBlanks.data(), static_cast<std::streamsize>(blanks));
}

std::size_t CJsonWriter::Depth() const
{
    return indent_ + 2 * levels_.size();
}

CJsonWriter& CJsonWriter::Text(std::string_view utf8)
{
    Place();
    Quoted(utf8);
    return *this;
}

void CJsonWriter::Quoted(std::string_view utf8)
{
    out_ << '"';
    std::size_t plain = 0;
    char escape[7];
    for (std::size_t at = 0; at < utf8.size(); ++at) {
        if (!EscapeOf(static_cast<unsigned char>(utf8[at]), escape))
            continue;
        out_.write(utf8.data() + plain, static_cast<std::streamsize>(at - plain));
        out_ << escape;
        plain = at + 1;
    }
    out_.write(utf8.data() + plain, static_cast<std::streamsize>(utf8.size() - plain));
    out_ << '"';
}

// The number's digits as JSON writes them, whatever the stream's locale.
template <typename Integer>
void CJsonWriter::Digits(Integer number)
{
    char digits[24];
    const std::to_chars_result written = std::to_chars(digits, digits + sizeof digits, number);
    out_.write(digits, written.ptr - digits);
}

CJsonWriter& CJsonWriter::Number(std::uint64_t number)
{
    Place();
    Digits(number);
    return *this;
}

CJsonWriter& CJsonWriter::SignedNumber(long long number)
{
    Place();
    Digits(number);
    return *this;
}


CJsonWriter& CJsonWriter::Bool(bool value)
{
    Place();
    out_ << (value ? "true" : "false");
    return *this;
}

CJsonWriter& CJsonWriter::Null()
{
    Place();
    out_ << "null";
    return *this;
}

std::ostream& CJsonWriter::ValueWrittenApart()
{
    Place();
    return out_;
}
