// The sources that the command line names: each opened, with the events of
// its History.ini (or, in an archive without one that can be read, those
// whose logs it holds) and what is wrong with it; and the machines whose histories they
// hold.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "report/CHistorySource.h"
#include "report/MachineHistories.h"

class CReportSources {
public:
    // False, with a one-line reason, at the first source that is neither a
    // folder nor an archive that can be read, that holds no events, or that
    // is given twice (however its name is spelt).
    bool Open(const std::vector<std::string>& paths, std::string& reason);

    std::size_t Count() const { return sources_.size(); }
    const CHistorySource& Source(std::size_t place) const { return *sources_[place].source; }
    // The source as the command line names it.
    const std::string& Name(std::size_t place) const { return sources_[place].name; }
    // What is wrong with the source as a whole, in words.
    const std::vector<std::string>& Notes(std::size_t place) const { return sources_[place].notes; }

    // The machines: with one source, its history; with several, grouped by
    // the computer that each one's event logs name. Takes the sources'
    // events, so that each is held once.
    std::vector<MachineEvents> TakeMachines();

private:
    struct Opened {
        std::string name;
        std::unique_ptr<CHistorySource> source;
        std::vector<std::string> notes;
        SourceEvents events;
    };

    bool GivenBefore(const std::string& path) const;
    bool ReadEvents(Opened& opened) const;
    static void TellWhatItHolds(Opened& opened);
    static std::string ComputerOf(const Opened& opened);

    std::vector<Opened> sources_;
};
