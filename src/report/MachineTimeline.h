// The events of one machine in the order of their starts, each with the time
// until which it ran: its end, or, for an event that never ended or whose end
// can't be read, the next event's start on the machine, or the end of the
// history. An -end without a -start has its end for its start. An event
// without a time that can be read has no place among them.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "report/ReportModel.h"

class MachineTimeline {
public:
    explicit MachineTimeline(const std::vector<EventRecord>& events);

    // The events that have a place, in the order of their starts (two of one
    // start in the order of History.ini), then the others in that order.
    std::vector<std::size_t> Order() const;

    // The start of an event that has a place.
    std::optional<long long> Start(std::size_t event) const;
    // When the event's after snapshot was taken: its end, if it ended and
    // its end can be read.
    std::optional<long long> AfterSnapshotTime(std::size_t event) const;

    // The events ahead of `event` in the order of starts that ran at some
    // time after `since`, in that order.
    std::vector<std::size_t> RanBetween(long long since, std::size_t event) const;
    // From the start of `earlier` to that of `event`: `earlier` itself,
    // however short, and the events ahead of `event` that ran at some time
    // after that start, in the order of starts.
    std::vector<std::size_t> RanFromStartOf(std::size_t earlier, std::size_t event) const;

private:
    struct Span {
        std::size_t event = 0;
        long long start = 0;
        long long until = 0;
        std::optional<long long> end;
    };

    std::vector<std::size_t> RanAfter(long long since, std::size_t event, std::optional<std::size_t> also) const;

    std::vector<Span> spans_;
    std::vector<std::size_t> untimed_;
    // Each event's place in spans_, or none.
    std::vector<std::optional<std::size_t>> places_;
};
