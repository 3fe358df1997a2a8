#include "report/DecodedTexts.h"

#include "report/EventFacts.h"

namespace {

void Decode(std::string& text, const CTextDecoder& decoder)
{
    text = decoder.Utf8(text);
}

void DecodeAll(std::vector<std::string>& texts, const CTextDecoder& decoder)
{
    for (std::string& text : texts)
        Decode(text, decoder);
}

void DecodeRecord(EventRecord& record, const CTextDecoder& decoder)
{
    for (std::string* text :
         {&record.eventId, &record.action, &record.product, &record.version, &record.serviceLevel, &record.type,
          &record.path, &record.copyName, &record.completeFlag, &record.startTime, &record.endTime, &record.result,
          &record.logFile, &record.traceFile, &record.responseFile, &record.eventLogFile, &record.wiLogFile})
        Decode(*text, decoder);
}

void DecodeNames(EventName& name, const CTextDecoder& decoder)
{
    Decode(name.eventId, decoder);
    Decode(name.copy, decoder);
}

void DecodeNameList(std::vector<EventName>& names, const CTextDecoder& decoder)
{
    for (EventName& name : names)
        DecodeNames(name, decoder);
}

void DecodeFieldList(std::vector<ItemField>& fields, const CTextDecoder& decoder)
{
    for (ItemField& field : fields)
        DecodeAll(field.texts, decoder);
}

void DecodeFields(ItemFields& fields, const CTextDecoder& decoder)
{
    DecodeFieldList(fields.names, decoder);
    DecodeFieldList(fields.values, decoder);
}

void DecodeListed(std::vector<ListedItem>& items, const CTextDecoder& decoder)
{
    for (ListedItem& item : items) {
        Decode(item.name, decoder);
        Decode(item.value, decoder);
        DecodeFields(item.fields, decoder);
        for (ItemValue& detail : item.details) {
            Decode(detail.name, decoder);
            Decode(detail.value, decoder);
            DecodeFields(detail.fields, decoder);
        }
    }
}

void DecodeSection(SectionChanges& changes, const CTextDecoder& decoder)
{
    DecodeListed(changes.added, decoder);
    DecodeListed(changes.removed, decoder);
    for (ItemChange& change : changes.changed) {
        Decode(change.name, decoder);
        Decode(change.before, decoder);
        Decode(change.after, decoder);
        DecodeFields(change.fields, decoder);
        DecodeFieldList(change.valuesBefore, decoder);
    }
}

void DecodeChanges(SnapshotChanges& changes, const CTextDecoder& decoder)
{
    for (std::optional<SectionChanges>& section : changes) {
        if (section)
            DecodeSection(*section, decoder);
    }
}

void DecodeSince(ChangesSince& since, const CTextDecoder& decoder)
{
    DecodeNames(since.event, decoder);
    DecodeNameList(since.ranBetween, decoder);
    DecodeChanges(since.changes, decoder);
}

void DecodeComputer(ComputerChanges& computer, const CTextDecoder& decoder)
{
    DecodeNames(computer.since, decoder);
    DecodeNameList(computer.ranBetween, decoder);
    DecodeSection(computer.changes, decoder);
}

}  // namespace

CTextDecoder DecoderOf(const std::vector<EventRecord>& events, int ansiCodePage)
{
    for (const EventRecord& event : events) {
        if (!event.eventLogFile.empty())
            return CTextDecoder(RecordedOnLinux(event) ? CTextDecoder::kUtf8 : ansiCodePage);
    }
    return CTextDecoder(ansiCodePage);
}

void DecodeEventTexts(EventReport& event, const CTextDecoder& decoder)
{
    DecodeRecord(event.record, decoder);
    DecodeAll(event.messages, decoder);
    DecodeAll(event.notes, decoder);
    for (InstallerLog& log : event.installerLogs) {
        for (std::string* text : {&log.name, &log.path, &log.entry, &log.text})
            Decode(*text, decoder);
    }
    Decode(event.eventLogName, decoder);
    if (event.changes)
        DecodeChanges(*event.changes, decoder);
    if (event.sincePrevious)
        DecodeSince(*event.sincePrevious, decoder);
    if (event.computer)
        DecodeComputer(*event.computer, decoder);
}

void DecodeHistoryTexts(HistoryReport& report, const CTextDecoder& decoder)
{
    Decode(report.computerName, decoder);
    Decode(report.operatingSystem, decoder);
    DecodeAll(report.notes, decoder);
    for (CopyReport& copy : report.copies)
        Decode(copy.name, decoder);
}

void DecodeComparison(EventComparison& comparison, const CTextDecoder& first, const CTextDecoder& second)
{
    DecodeNames(comparison.first, first);
    DecodeNames(comparison.second, second);
    Decode(comparison.missing, first);
    if (comparison.changes)
        DecodeChanges(*comparison.changes, first);
    Decode(comparison.computerMissing, first);
    if (comparison.computer)
        DecodeSection(*comparison.computer, first);
}
