// Sources of one computer make one history; an event that several of them
// hold is one event, and the copy of it that tells most is the one read.
#include <gtest/gtest.h>

#include "report/MachineHistories.h"

namespace {

EventRecord Event(std::string id, std::string start, std::string end = "")
{
    EventRecord event;
    event.eventId = std::move(id);
    event.startTime = std::move(start);
    event.endTime = std::move(end);
    return event;
}

// A whole source of the computer that holds the events and their logs.
SourceEvents Source(std::string computer, std::vector<EventRecord> events)
{
    SourceEvents source;
    source.computer = std::move(computer);
    source.events = std::move(events);
    source.logsHeld.assign(source.events.size(), true);
    return source;
}

// An event that a damaged archive without History.ini knows by its log alone.
EventRecord ByItsLog(std::string id)
{
    EventRecord event = Event(std::move(id), "");
    event.inHistoryIni = false;
    return event;
}

std::vector<std::string> IdsOf(const MachineEvents& machine)
{
    std::vector<std::string> ids;
    for (const EventRecord& event : machine.events)
        ids.push_back(event.eventId);
    return ids;
}

}  // namespace

TEST(MergeByComputer, TwoArchivesOfOneMachineAWeekApartMakeOneHistory)
{
    const SourceEvents week1 = Source("VM1", {Event("E1", "20261101 10:00:00", "20261101 10:05:00"),
                                              Event("E2", "20261102 10:00:00")});
    const SourceEvents week2 = Source("vm1", {Event("E1", "20261101 10:00:00", "20261101 10:05:00"),
                                              Event("E2", "20261102 10:00:00", "20261102 10:30:00"),
                                              Event("E3", "20261108 09:00:00", "20261108 09:10:00")});
    const std::vector<MachineEvents> machines = MergeByComputer({week1, week2});
    ASSERT_EQ(machines.size(), 1u);
    const MachineEvents& machine = machines[0];
    EXPECT_EQ(machine.sources, (std::vector<std::size_t>{0, 1}));
    EXPECT_EQ(IdsOf(machine), (std::vector<std::string>{"E1", "E2", "E3"}));
    // E1 is read from the first archive; E2 ended only in the second, which
    // tells how it ended; E3 is the second's alone.
    EXPECT_EQ(machine.events[0].source, 0u);
    EXPECT_EQ(machine.holders[0], (std::vector<std::size_t>{0, 1}));
    EXPECT_EQ(machine.events[1].source, 1u);
    EXPECT_EQ(machine.events[1].endTime, "20261102 10:30:00");
    EXPECT_EQ(machine.holders[1], (std::vector<std::size_t>{1, 0}));
    EXPECT_EQ(machine.events[2].source, 1u);
    EXPECT_EQ(machine.holders[2], (std::vector<std::size_t>{1}));
}

TEST(MergeByComputer, AnEventIdOfAnotherStartIsAnotherEvent)
{
    const std::vector<MachineEvents> machines = MergeByComputer(
        {Source("VM1", {Event("E1", "20261101 10:00:00")}), Source("VM1", {Event("E1", "20261109 10:00:00")})});
    ASSERT_EQ(machines.size(), 1u);
    EXPECT_EQ(IdsOf(machines[0]), (std::vector<std::string>{"E1", "E1"}));
    EXPECT_EQ(machines[0].events[1].source, 1u);
}

TEST(MergeByComputer, EachComputerIsAMachineInTheOrderOfItsFirstSource)
{
    const std::vector<MachineEvents> machines =
        MergeByComputer({Source("VM1", {Event("A", "20261101 10:00:00")}),
                         Source("VM2", {Event("A", "20261101 10:00:00")}),
                         Source("VM1", {Event("B", "20261103 10:00:00")})});
    ASSERT_EQ(machines.size(), 2u);
    EXPECT_EQ(machines[0].sources, (std::vector<std::size_t>{0, 2}));
    EXPECT_EQ(IdsOf(machines[0]), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(machines[1].sources, (std::vector<std::size_t>{1}));
    // The same EventID and start on another computer is that computer's event.
    EXPECT_EQ(IdsOf(machines[1]), (std::vector<std::string>{"A"}));
    EXPECT_EQ(machines[1].events[0].source, 1u);
}

TEST(MergeByComputer, ASourceOfAnUnknownComputerJoinsTheMachineThatHoldsAllItsEvents)
{
    // A truncated archive, given first, without History.ini and without a
    // log that names its computer: its events are known by their logs alone.
    SourceEvents truncated = Source("", {ByItsLog("E2"), ByItsLog("E1")});
    truncated.whole = false;
    const std::vector<MachineEvents> machines =
        MergeByComputer({truncated, Source("VM2", {Event("E1", "20261101 10:00:00")}),
                         Source("VM1", {Event("E1", "20261101 10:00:00", "20261101 10:05:00"),
                                        Event("E2", "20261102 10:00:00", "20261102 10:05:00")})});
    ASSERT_EQ(machines.size(), 2u);
    EXPECT_EQ(machines[0].sources, (std::vector<std::size_t>{0, 2}));
    EXPECT_EQ(machines[0].computer, "VM1");
    EXPECT_EQ(IdsOf(machines[0]), (std::vector<std::string>{"E1", "E2"}));
    EXPECT_EQ(machines[0].holders[0], (std::vector<std::size_t>{2, 0}));
    EXPECT_EQ(machines[0].events[1].startTime, "20261102 10:00:00");
    EXPECT_EQ(machines[1].sources, (std::vector<std::size_t>{1}));
}

TEST(MergeByComputer, SourcesOfAnUnknownComputerThatNoMachineHoldsStandAlone)
{
    const std::vector<MachineEvents> machines =
        MergeByComputer({Source("", {Event("A", "20261101 10:00:00")}), Source("VM1", {Event("B", "20261101 10:00:00")}),
                         Source("", {})});
    ASSERT_EQ(machines.size(), 3u);
    EXPECT_EQ(machines[0].sources, (std::vector<std::size_t>{0}));
    EXPECT_EQ(machines[1].sources, (std::vector<std::size_t>{1}));
    EXPECT_EQ(machines[2].sources, (std::vector<std::size_t>{2}));
}

TEST(MergeByComputer, WhatHistoryIniHoldsWinsOverAnEventKnownByItsLogAlone)
{
    EventRecord inIni = Event("E1", "20261101 10:00:00");
    inIni.action = "Install";
    const std::vector<MachineEvents> machines =
        MergeByComputer({Source("VM1", {ByItsLog("E1")}), Source("VM1", {inIni})});
    ASSERT_EQ(machines.size(), 1u);
    ASSERT_EQ(machines[0].events.size(), 1u);
    EXPECT_TRUE(machines[0].events[0].inHistoryIni);
    EXPECT_EQ(machines[0].events[0].action, "Install");
    EXPECT_EQ(machines[0].events[0].source, 1u);
    EXPECT_EQ(machines[0].holders[0], (std::vector<std::size_t>{1, 0}));
}

// A damaged source's copy may be cut off anywhere: a whole source's wins,
// and of those, one whose source holds the event's log.
TEST(MergeByComputer, ACopyOfAWholeSourceWinsThenOneWhoseSourceHoldsItsLog)
{
    const EventRecord e1 = Event("E1", "20261101 10:00:00", "20261101 10:05:00");
    SourceEvents withoutLog = Source("VM1", {e1});
    withoutLog.logsHeld = {false};
    SourceEvents damaged = Source("VM1", {e1});
    damaged.whole = false;
    const SourceEvents whole = Source("VM1", {e1});
    const std::vector<MachineEvents> machines = MergeByComputer({withoutLog, damaged, whole});
    ASSERT_EQ(machines.size(), 1u);
    EXPECT_EQ(machines[0].events[0].source, 2u);
    EXPECT_EQ(machines[0].holders[0], (std::vector<std::size_t>{2, 0, 1}));
}

TEST(MergeByComputer, AStartCutOffInADamagedHistoryIniIsNoStart)
{
    SourceEvents cut = Source("VM1", {Event("E1", "20")});
    cut.whole = false;
    const std::vector<MachineEvents> machines =
        MergeByComputer({Source("VM1", {Event("E1", "20261101 10:00:00")}), cut});
    ASSERT_EQ(machines.size(), 1u);
    EXPECT_EQ(IdsOf(machines[0]), (std::vector<std::string>{"E1"}));
    EXPECT_EQ(machines[0].holders[0], (std::vector<std::size_t>{0, 1}));
}

TEST(MergeByComputer, OneSourceIsItsHistoryAsItStands)
{
    const std::vector<MachineEvents> machines =
        MergeByComputer({Source("", {Event("B", "20261102 10:00:00"), Event("A", "20261101 10:00:00")})});
    ASSERT_EQ(machines.size(), 1u);
    EXPECT_EQ(IdsOf(machines[0]), (std::vector<std::string>{"B", "A"}));
}
