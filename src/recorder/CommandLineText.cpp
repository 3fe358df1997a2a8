#include "recorder/CommandLineText.h"

#include "history/CHistoryStore.h"

namespace {

bool IsBlank(char c)
{
    return c == ' ' || c == '\t';
}

// A double quote at `at` behind `backslashes` backslashes, which are already
// read: each pair gives one backslash; an odd one makes the quote plain, and
// otherwise the quote opens or closes a group, or, doubled inside a group,
// stands for one quote. Leaves `at` behind the quote.
void ReadQuote(const std::string& text, std::size_t& at, std::size_t backslashes,
               bool& quoted, std::string& argument)
{
    argument.append(backslashes / 2, '\\');
    if (backslashes % 2 == 1) {
        argument += '"';
    } else if (quoted && at + 1 < text.size() && text[at + 1] == '"') {
        argument += '"';
        ++at;
    } else {
        quoted = !quoted;
    }
    ++at;
}

// Reads one argument from `at`, which stands on its first character, and
// leaves `at` behind it.
std::string ReadArgument(const std::string& text, std::size_t& at)
{
    std::string argument;
    bool quoted = false;
    while (at < text.size() && (quoted || !IsBlank(text[at]))) {
        std::size_t backslashes = 0;
        for (; at < text.size() && text[at] == '\\'; ++at)
            ++backslashes;
        if (at < text.size() && text[at] == '"')
            ReadQuote(text, at, backslashes, quoted, argument);
        else if (backslashes > 0)
            argument.append(backslashes, '\\');
        else
            argument += text[at++];
    }
    return argument;
}

}  // namespace

std::vector<std::string> SplitCommandLine(const std::string& text)
{
    std::vector<std::string> arguments;
    std::size_t at = 0;
    for (;;) {
        while (at < text.size() && IsBlank(text[at]))
            ++at;
        if (at == text.size())
            return arguments;
        arguments.push_back(ReadArgument(text, at));
    }
}

int RecordCommandLine(const std::string& callerName, const std::string& text)
{
    std::vector<std::string> arguments = SplitCommandLine(text);
    arguments.insert(arguments.begin(), callerName);
    std::vector<char*> elements;
    for (std::string& argument : arguments)
        elements.push_back(&argument[0]);
    // A program's argument list ends in a null pointer; an option in the last
    // place then reads no text rather than memory behind the list.
    elements.push_back(nullptr);
    int argc = static_cast<int>(arguments.size());
    CHistoryStore store;
    return store.Record(argc, elements.data());
}
