#include "report/CSectionMemo.h"

#include <utility>

std::shared_ptr<const SnapshotSection> CSectionMemo::Find(SnapshotPart part, const std::string& text,
                                                          bool complete) const
{
    const Entry& entry = entries_[static_cast<std::size_t>(part)];
    if (entry.section == nullptr || entry.section->complete != complete || entry.text != text)
        return nullptr;
    return entry.section;
}

void CSectionMemo::Keep(SnapshotPart part, std::string& text, std::shared_ptr<const SnapshotSection> section)
{
    Entry& entry = entries_[static_cast<std::size_t>(part)];
    entry.text.swap(text);
    entry.section = std::move(section);
}
