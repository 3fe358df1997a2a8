// ZORHistoryReport: what did each install change? Reads a history, from an
// archive or a folder, and writes the report as HTML and/or JSON, with a short
// summary on standard output.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "platform/FileSystem.h"
#include "report/CEventForms.h"
#include "report/CReportBuilder.h"
#include "report/CReportSources.h"
#include "report/HtmlReport.h"
#include "report/JsonReport.h"
#include "report/ReportOptions.h"
#include "report/TextSummary.h"

namespace {

constexpr int kWritten = 0;
constexpr int kCantRead = 1;
constexpr int kUsageError = 2;

// Each output is written beside its name, readable by its owner alone (the
// page embeds installer logs, which may be owner-only copies), and put in
// place whole; a failed write leaves no file.
template <typename Writer>
bool WriteFile(const std::string& path, const ReportOfSources& report, Writer write, const EventWriter& writeEvent,
               const CEventForms& forms)
{
    std::string temporary;
    std::FILE* made = platform::CreateFileBeside(path, temporary);
    if (made == nullptr)
        return false;
    std::fclose(made);
    std::filebuf file;
    bool written = platform::OpenFileBuffer(file, temporary, std::ios_base::out | std::ios_base::binary);
    if (written) {
        std::ostream out(&file);
        write(report, out, writeEvent);
        out.flush();
        written = out.good() && forms.Good();
    }
    written = file.close() != nullptr && written;
    if (!written) {
        std::remove(platform::SystemPath(temporary).c_str());
        return false;
    }
    return platform::PutFileInPlace(temporary, path);
}

bool WriteOutputs(const ReportOptions& options, const ReportOfSources& report, CEventForms& forms)
{
    if (!options.htmlPath.empty() && !WriteFile(options.htmlPath, report, WriteHtmlReport, forms.Html(), forms)) {
        std::cerr << options.htmlPath << ": the report can't be written" << std::endl;
        return false;
    }
    if (!options.jsonPath.empty() && !WriteFile(options.jsonPath, report, WriteJsonReport, forms.Json(), forms)) {
        std::cerr << options.jsonPath << ": the report can't be written" << std::endl;
        return false;
    }
    return true;
}

// The report, each event's forms kept beside the first output as it is read.
bool BuildReport(const ReportOptions& options, CReportSources& sources, CEventForms& forms,
                 ReportOfSources& report)
{
    const std::string& first = options.htmlPath.empty() ? options.jsonPath : options.htmlPath;
    if (!forms.Open(first, !options.htmlPath.empty(), !options.jsonPath.empty())) {
        std::cerr << first << ": the report can't be written" << std::endl;
        return false;
    }
    std::string reason;
    CReportBuilder builder(sources, options.codePage);
    if (!options.compareFirst.empty())
        builder.Compare(options.compareFirst, options.compareSecond, options.compareBefore);
    if (!builder.Build(report, reason, [&forms](EventReport& event) { forms.Take(event); })) {
        std::cerr << reason << std::endl;
        return false;
    }
    return true;
}

// Why the outputs can't be written where they are named, or empty: an output
// must not be a source archive, lie inside a source folder, or be the other
// output, however the names are spelt.
std::string OutputConflict(const ReportOptions& options)
{
    for (const std::string& source : options.sources) {
        const bool sourceIsFolder = platform::StatPath(platform::SystemPath(source)).directory;
        for (const std::string* path : {&options.htmlPath, &options.jsonPath}) {
            if (path->empty())
                continue;
            if (sourceIsFolder ? platform::LiesWithin(*path, source) : platform::SameEntry(*path, source))
                return *path + ": the report can't be written over its source";
        }
    }
    if (!options.htmlPath.empty() && !options.jsonPath.empty() &&
        platform::SameEntry(options.htmlPath, options.jsonPath))
        return options.jsonPath + ": -o and -json name the same file";
    return std::string();
}

int Run(const ReportOptions& options)
{
    CReportSources sources;
    std::string reason = OutputConflict(options);
    if (!reason.empty()) {
        std::cerr << reason << std::endl;
        return kCantRead;
    }
    if (!sources.Open(options.sources, reason)) {
        std::cerr << reason << std::endl;
        return kCantRead;
    }
    CEventForms forms;
    ReportOfSources report;
    if (!BuildReport(options, sources, forms, report))
        return kCantRead;
    WriteTextSummary(report, std::cout, forms.Summary());
    if (!WriteOutputs(options, report, forms))
        return kCantRead;
    for (const std::string* path : {&options.htmlPath, &options.jsonPath}) {
        if (!path->empty())
            std::cout << "Report written to " << *path << '\n';
    }
    return kWritten;
}

}  // namespace

int main(int argc, char* argv[])
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    ReportOptions options;
    std::string error;
    if (!ParseReportOptions(arguments, options, error)) {
        std::cerr << "ZORHistoryReport: " << error << "\n\n" << kReportUsage;
        return kUsageError;
    }
    if (options.help) {
        std::cout << kReportUsage;
        return kWritten;
    }
    // A history too large for the memory at hand ends the run with one line;
    // the objects of the run are put away on the way out, the file that
    // holds the events' forms with them.
    try {
        return Run(options);
    } catch (const std::bad_alloc&) {
        std::cerr << "ZORHistoryReport: not enough memory to make the report" << std::endl;
        return kCantRead;
    }
}
