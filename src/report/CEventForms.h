// The forms of each event written out of memory as soon as the event is
// read: its part of the page, its object of the JSON form and its line of
// the summary go to a temporary file beside the report, and the event keeps
// only what the timelines need. The report's forms then copy each event's
// part back from the file in their own order, so that the report holds one
// event's details at a time, however many events the history has.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "report/ReportModel.h"

class CEventForms {
public:
    CEventForms() = default;
    ~CEventForms();
    CEventForms(const CEventForms&) = delete;
    CEventForms& operator=(const CEventForms&) = delete;

    // Makes the temporary file beside `reportPath`, for the page, the JSON
    // form or both; false if it can't be made there.
    bool Open(const std::string& reportPath, bool html, bool json);
    // Writes the event's forms and lets go of its details.
    void Take(EventReport& event);
    // False once a write or a read of the file failed.
    bool Good() const { return good_; }

    EventWriter Html();
    EventWriter Json();
    EventWriter Summary();

private:
    enum Form { kHtml, kJson, kSummary, kFormCount };
    struct Stored {
        std::uint64_t offset = 0;
        std::size_t sizes[kFormCount] = {};
    };

    void Copy(const EventReport& event, Form form, std::ostream& out);

    std::filebuf file_;
    std::string path_;
    bool forms_[kFormCount] = {};
    std::uint64_t end_ = 0;
    bool good_ = false;
    // By the events' machines, then their places in History.ini.
    std::vector<std::vector<Stored>> stored_;
};
