#include "report/CEventForms.h"

#include <cstdio>
#include <ostream>
#include <utility>

#include "platform/FileSystem.h"
#include "report/HtmlReport.h"
#include "report/JsonReport.h"
#include "report/TextSummary.h"

namespace {

constexpr std::size_t kBlockSize = 64 * 1024;

// What the timelines and the summary's groups need of an event.
EventReport TimelineFacts(EventReport& event)
{
    EventReport facts;
    facts.place = event.place;
    facts.machine = event.machine;
    facts.record = std::move(event.record);
    facts.outcome = event.outcome;
    facts.durationSeconds = event.durationSeconds;
    facts.hasBefore = event.hasBefore;
    facts.hasAfter = event.hasAfter;
    facts.eventLogName = std::move(event.eventLogName);
    facts.changeCounts = event.changeCounts;
    facts.driftCounts = event.driftCounts;
    return facts;
}

}  // namespace

CEventForms::~CEventForms()
{
    if (path_.empty())
        return;
    file_.close();
    std::remove(platform::SystemPath(path_).c_str());
}

// The file is made exclusively, readable by its owner alone, then opened
// again for reading and writing.
bool CEventForms::Open(const std::string& reportPath, bool html, bool json)
{
    std::FILE* made = platform::CreateFileBeside(reportPath, path_);
    if (made == nullptr)
        return false;
    std::fclose(made);
    forms_[kHtml] = html;
    forms_[kJson] = json;
    forms_[kSummary] = true;
    good_ = platform::OpenFileBuffer(file_, path_, std::ios_base::in | std::ios_base::out | std::ios_base::binary);
    return good_;
}

void CEventForms::Take(EventReport& event)
{
    static const EventWriter writers[kFormCount] = {WriteHtmlEvent, WriteJsonEvent, WriteSummaryEvent};
    if (stored_.size() <= event.machine)
        stored_.resize(event.machine + 1);
    std::vector<Stored>& machine = stored_[event.machine];
    if (machine.size() <= event.place)
        machine.resize(event.place + 1);
    Stored& stored = machine[event.place];
    stored.offset = end_;
    good_ = good_ && file_.pubseekpos(static_cast<std::streamoff>(end_)) != std::streampos(-1);
    std::ostream out(&file_);
    for (int form = 0; good_ && form < kFormCount; ++form) {
        if (!forms_[form])
            continue;
        writers[form](event, out);
        const std::streampos at = file_.pubseekoff(0, std::ios_base::cur, std::ios_base::out);
        good_ = out.good() && at != std::streampos(-1);
        stored.sizes[form] = good_ ? static_cast<std::size_t>(static_cast<std::uint64_t>(at) - end_) : 0;
        end_ += stored.sizes[form];
    }
    event = TimelineFacts(event);
}

void CEventForms::Copy(const EventReport& event, Form form, std::ostream& out)
{
    const Stored& stored = stored_.at(event.machine).at(event.place);
    std::uint64_t at = stored.offset;
    for (int before = 0; before < form; ++before)
        at += stored.sizes[before];
    good_ = good_ && file_.pubseekpos(static_cast<std::streamoff>(at)) != std::streampos(-1);
    char block[kBlockSize];
    for (std::size_t left = stored.sizes[form]; good_ && left != 0;) {
        const std::streamsize wanted = static_cast<std::streamsize>(std::min(left, kBlockSize));
        const std::streamsize read = file_.sgetn(block, wanted);
        good_ = read == wanted;
        out.write(block, read);
        left -= static_cast<std::size_t>(read);
    }
}

EventWriter CEventForms::Html()
{
    return [this](const EventReport& event, std::ostream& out) { Copy(event, kHtml, out); };
}

EventWriter CEventForms::Json()
{
    return [this](const EventReport& event, std::ostream& out) { Copy(event, kJson, out); };
}

EventWriter CEventForms::Summary()
{
    return [this](const EventReport& event, std::ostream& out) { Copy(event, kSummary, out); };
}
