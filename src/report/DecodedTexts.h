// The report's texts from the history, decoded from the code page in which
// the recorder wrote them to UTF-8, once each, as an event's report is done:
// the forms then write UTF-8 alone.
#pragma once

#include "report/ReportModel.h"
#include "report/TextDecoding.h"

// The code page in which the history was written: UTF-8 where its
// Event_Log_File paths begin with "/" (the Linux build), else the given ANSI
// code page. The first event that names its log decides.
CTextDecoder DecoderOf(const std::vector<EventRecord>& events, int ansiCodePage);

void DecodeEventTexts(EventReport& event, const CTextDecoder& decoder);
// The machine, the copies' names and the notes on the sources.
void DecodeHistoryTexts(HistoryReport& report, const CTextDecoder& decoder);
// The two events that -compare names, each as its machine's history was
// written; the names of things and their values as the first one's.
void DecodeComparison(EventComparison& comparison, const CTextDecoder& first, const CTextDecoder& second);
