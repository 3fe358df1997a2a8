#include "report/ReportOptions.h"

#include "report/TextDecoding.h"

const char* const kReportUsage =
    "Usage: ZORHistoryReport SOURCE [SOURCE...] [-o report.html] [-json report.json]\n"
    "                        [-codepage N] [-compare E1 E2 [-before]]\n"
    "\n"
    "Compares the snapshots of the machine that every recorded install keeps,\n"
    "before and after the install, and tells what each install changed.\n"
    "\n"
    "  SOURCE          an archive written by ZORGetInstallLog -f, or a history folder;\n"
    "                  several make one report, grouped by computer, in which the\n"
    "                  sources of one computer make one history\n"
    "  -o report.html  write the report as one HTML page to this file\n"
    "  -json file      write the same facts as JSON to this file\n"
    "  -codepage N     the ANSI code page of the Windows system that wrote the\n"
    "                  history: 1252 (the default), 1250, 1251 or 437; a history\n"
    "                  written on Linux is read as UTF-8 whatever N is\n"
    "  -compare E1 E2  compare the snapshot after event E1 with the snapshot\n"
    "                  after event E2, on the console and on the page; with\n"
    "                  several sources, SOURCE:EventID names an event of one\n"
    "  -before         with -compare, take the snapshot before E1 instead\n"
    "  -h              show this text\n"
    "\n"
    "With neither -o nor -json, the page is written to report.html in the\n"
    "current folder. A short summary always goes to standard output.\n"
    "Exit codes: 0 report written, 1 source or output can't be used, 2 usage error.\n";

namespace {

const char kDefaultHtmlPath[] = "report.html";

bool TakeValue(const std::vector<std::string>& arguments, std::size_t& i, std::string& value, std::string& error)
{
    if (i + 1 >= arguments.size() || arguments[i + 1].empty()) {
        error = "the option " + arguments[i] + " needs a file name";
        return false;
    }
    if (!value.empty()) {
        error = "the option " + arguments[i] + " is given twice";
        return false;
    }
    value = arguments[++i];
    return true;
}

// The code page behind -codepage, if the report knows it.
bool TakeCodePage(const std::vector<std::string>& arguments, std::size_t& i, bool& given, int& codePage,
                  std::string& error)
{
    std::string value;
    if (given) {
        error = "the option -codepage is given twice";
        return false;
    }
    given = true;
    if (i + 1 < arguments.size())
        value = arguments[++i];
    const bool digits = !value.empty() && value.size() <= 5 && value.find_first_not_of("0123456789") == std::string::npos;
    codePage = digits ? std::stoi(value) : 0;
    if (codePage == CTextDecoder::kUtf8 || !CTextDecoder::Knows(codePage)) {
        error = "the option -codepage needs one of the code pages 1252, 1250, 1251 and 437";
        return false;
    }
    return true;
}

// One of the program's options: "-compare E1 -o r.html" lacks its second
// EventID rather than comparing an event named "-o".
bool IsOption(const std::string& argument)
{
    for (const char* option : {"-o", "-json", "-codepage", "-compare", "-before", "-h", "--help", "/?"}) {
        if (argument == option)
            return true;
    }
    return false;
}

// The two EventIDs behind -compare.
bool TakeEvents(const std::vector<std::string>& arguments, std::size_t& i, ReportOptions& options, std::string& error)
{
    if (!options.compareFirst.empty()) {
        error = "the option -compare is given twice";
        return false;
    }
    if (i + 2 >= arguments.size() || arguments[i + 1].empty() || arguments[i + 2].empty() ||
        IsOption(arguments[i + 1]) || IsOption(arguments[i + 2])) {
        error = "the option -compare needs two EventIDs";
        return false;
    }
    options.compareFirst = arguments[++i];
    options.compareSecond = arguments[++i];
    return true;
}

}  // namespace

bool ParseReportOptions(const std::vector<std::string>& arguments, ReportOptions& options, std::string& error)
{
    options = ReportOptions();
    bool codePageGiven = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "-h" || argument == "--help" || argument == "/?") {
            options.help = true;
            return true;
        }
        if (argument == "-o") {
            if (!TakeValue(arguments, i, options.htmlPath, error))
                return false;
        } else if (argument == "-json") {
            if (!TakeValue(arguments, i, options.jsonPath, error))
                return false;
        } else if (argument == "-codepage") {
            if (!TakeCodePage(arguments, i, codePageGiven, options.codePage, error))
                return false;
        } else if (argument == "-compare") {
            if (!TakeEvents(arguments, i, options, error))
                return false;
        } else if (argument == "-before") {
            options.compareBefore = true;
        } else if (!argument.empty() && argument[0] == '-') {
            error = "unknown option " + argument;
            return false;
        } else {
            options.sources.push_back(argument);
        }
    }
    if (options.sources.empty()) {
        error = "no source given";
        return false;
    }
    if (options.compareBefore && options.compareFirst.empty()) {
        error = "the option -before goes with -compare";
        return false;
    }
    if (options.htmlPath.empty() && options.jsonPath.empty())
        options.htmlPath = kDefaultHtmlPath;
    return true;
}
