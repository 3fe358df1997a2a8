#include "report/MachineTimeline.h"

#include <algorithm>
#include <limits>

#include "recorder/EventTexts.h"
#include "report/EventFacts.h"

MachineTimeline::MachineTimeline(const std::vector<EventRecord>& events) : places_(events.size())
{
    for (std::size_t i = 0; i < events.size(); ++i) {
        const std::optional<long long> start = SecondsOfStamp(events[i].startTime);
        const std::optional<long long> end = SecondsOfStamp(events[i].endTime);
        const bool ended = events[i].completeFlag == texts::kComplete && end && (!start || *end >= *start);
        if (!start && !end) {
            untimed_.push_back(i);
            continue;
        }
        Span span;
        span.event = i;
        span.start = start ? *start : *end;
        span.end = ended ? end : std::nullopt;
        spans_.push_back(span);
    }
    std::stable_sort(spans_.begin(), spans_.end(), [](const Span& a, const Span& b) { return a.start < b.start; });
    for (std::size_t i = 0; i < spans_.size(); ++i) {
        const long long next = i + 1 < spans_.size() ? spans_[i + 1].start : std::numeric_limits<long long>::max();
        spans_[i].until = spans_[i].end ? *spans_[i].end : next;
        places_[spans_[i].event] = i;
    }
}

std::vector<std::size_t> MachineTimeline::Order() const
{
    std::vector<std::size_t> order;
    for (const Span& span : spans_)
        order.push_back(span.event);
    order.insert(order.end(), untimed_.begin(), untimed_.end());
    return order;
}

std::optional<long long> MachineTimeline::Start(std::size_t event) const
{
    if (!places_[event])
        return std::nullopt;
    return spans_[*places_[event]].start;
}

std::optional<long long> MachineTimeline::AfterSnapshotTime(std::size_t event) const
{
    if (!places_[event])
        return std::nullopt;
    return spans_[*places_[event]].end;
}

std::vector<std::size_t> MachineTimeline::RanBetween(long long since, std::size_t event) const
{
    return RanAfter(since, event, std::nullopt);
}

std::vector<std::size_t> MachineTimeline::RanFromStartOf(std::size_t earlier, std::size_t event) const
{
    if (!places_[earlier])
        return {};
    return RanAfter(spans_[*places_[earlier]].start, event, earlier);
}

// The events ahead of `event` that ran at some time after `since`, and
// `also`, in the order of starts.
std::vector<std::size_t> MachineTimeline::RanAfter(long long since, std::size_t event,
                                                   std::optional<std::size_t> also) const
{
    std::vector<std::size_t> ran;
    if (!places_[event])
        return ran;
    for (std::size_t i = 0; i < *places_[event]; ++i) {
        if (spans_[i].until > since || spans_[i].event == also)
            ran.push_back(spans_[i].event);
    }
    return ran;
}
