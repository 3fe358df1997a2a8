// The three forms of the report over a small report made by hand.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "report/HtmlReport.h"
#include "report/JsonReport.h"
#include "report/ReportOptions.h"
#include "report/SnapshotComparison.h"
#include "report/TextSummary.h"

namespace {

ListedItem Listed(std::string name, std::string value, ItemFields fields, std::vector<ItemValue> details = {})
{
    ListedItem item;
    item.name = std::move(name);
    item.value = std::move(value);
    item.fields = std::move(fields);
    item.details = std::move(details);
    return item;
}

ItemChange Changed(std::string name, std::string before, std::string after, ItemFields fields,
                   std::vector<ItemField> valuesBefore)
{
    return ItemChange{std::move(name), std::move(before), std::move(after), 0, std::move(fields),
                      std::move(valuesBefore)};
}

// The report over one source that holds the machine's history.
ReportOfSources OneSource(HistoryReport machine)
{
    ReportOfSources report;
    report.sources = machine.sources;
    report.machines.push_back(std::move(machine));
    return report;
}

HistoryReport SmallReport()
{
    HistoryReport report;
    report.sources = {"x.zip"};
    report.computerName = "VM";
    report.operatingSystem = "Microsoft Windows XP Home Edition";
    report.eventCount = 2;
    report.firstTime = "20061012 10:00:00";
    report.lastTime = "20061012 10:05:00";

    EventReport installed;
    installed.record.eventId = "E1";
    installed.record.action = "Install";
    installed.record.result = "1603";
    installed.record.copyName = "C1";
    installed.record.startTime = "20061012 10:00:00";
    installed.record.endTime = "20061012 10:01:30";
    installed.outcome = EventOutcome::Failed;
    installed.hasBefore = installed.hasAfter = true;
    installed.messages = {"<script>document.title='x'</script>"};
    SnapshotChanges changes;
    for (auto& section : changes)
        section = SectionChanges();
    changes[2]->added = {
        Listed("zorsrv.exe", "1", {"process", {TextField("image", "zorsrv.exe")}, {NumberField("count", "1")}})};
    changes[2]->changed = {Changed("svchost.exe", "2", "3",
                                   {"process", {TextField("image", "svchost.exe")}, {NumberField("count", "3")}},
                                   {NumberField("count", "2")})};
    changes[3]->removed = {Listed("<b>Old & odd</b>", "Stopped",
                                  {"service", {TextField("displayName", "<b>Old & odd</b>")},
                                   {TextField("state", "Stopped")}})};
    const std::vector<ItemField> copy{TextField("copy", "C1")};
    changes[4]->added = {Listed(
        "copy C1", "", {"copy", copy, {}},
        {{"instance PROD", "", {"instance", {copy[0], TextField("instance", "PROD")}, {}}},
         {"instance PROD: Port", "5000",
          {"instanceParameter", {copy[0], TextField("instance", "PROD"), TextField("name", "Port")},
           {TextField("value", "5000")}}}})};
    changes[5].reset();
    installed.changes = changes;
    installed.changeCounts = CountsOf(changes);

    EventReport open;
    open.record.eventId = "E2";
    open.record.action = "Upgrade";
    open.record.startTime = "2006-10-12 10:05";
    open.hasBefore = true;
    ChangesSince since;
    since.event = {"E1", "C1", ""};
    since.afterSnapshot = true;
    since.ranBetween = {{"E7", "C2", ""}};
    for (auto& section : since.changes)
        section = SectionChanges();
    since.changes[1]->added = {
        Listed("Tool", "2.0", {"software", {TextField("name", "Tool")}, {TextField("version", "2.0")}})};
    open.sincePrevious = since;
    ComputerChanges computer;
    computer.since = {"E1", "C1", ""};
    computer.changes.changed = {
        Changed("Service Pack", "Service Pack 1", "Service Pack 2",
                {"computerLine", {TextField("label", "Service Pack")}, {TextField("text", "Service Pack 2")}},
                {TextField("text", "Service Pack 1")})};
    open.computer = computer;

    report.copies = {CopyReport{"C1", {installed, open}}};
    return report;
}

}  // namespace

TEST(ReportWriters, TheTextSummaryHasOneLineForEachEvent)
{
    std::ostringstream out;
    WriteTextSummary(OneSource(SmallReport()), out);
    EXPECT_EQ(out.str(),
              "Computer VM, Microsoft Windows XP Home Edition\n"
              "2 events of 1 copy in x.zip\n"
              "C1 | E1 | Install | failed (1603) | users 0 software 0 processes 2 services 1 zorProducts 1 "
              "odbcDrivers -\n"
              "C1 | E2 | Upgrade | never ended | no snapshot after the install\n");
}

TEST(ReportWriters, TheTextSummaryCountsOneEventOfOneCopyInTheSingular)
{
    HistoryReport report = SmallReport();
    report.copies[0].events.resize(1);
    report.eventCount = 1;
    std::ostringstream out;
    WriteTextSummary(OneSource(report), out);
    EXPECT_NE(out.str().find("\n1 event of 1 copy in x.zip\n"), std::string::npos) << out.str();
}

// Two events compared: a line that names the two snapshots, a line of
// counts, and a line for each thing that came (+), went (-) or changed (~)
// behind its section's key; a thing that came with its owner is told with it.
TEST(ReportWriters, TheTextSummaryGivesAComparisonALineForEachChange)
{
    ReportOfSources report = OneSource(SmallReport());
    EventComparison compared;
    compared.first = EventName{"E1", "C1", ""};
    compared.second = EventName{"E4", "C2", ""};
    SnapshotChanges changes = *report.machines[0].copies[0].events[0].changes;
    changes[3]->changed = {Changed("ZOR Listener", "Started", "Stopped",
                                   {"service", {TextField("displayName", "ZOR Listener")}, {TextField("state", "Stopped")}},
                                   {TextField("state", "Started")})};
    compared.changes = changes;
    compared.computer = SectionChanges();
    compared.computer->changed = {Changed("Service Pack", "Service Pack 2", "Service Pack 3", {}, {})};
    report.comparison = compared;
    std::ostringstream out;
    WriteTextSummary(report, out);
    const std::string text = out.str();
    EXPECT_EQ(text.substr(text.find("Compared")),
              "Compared the after snapshot of E1 (copy C1) against the after snapshot of E4 (copy C2)\n"
              "users 0 software 0 processes 2 services 2 zorProducts 1 odbcDrivers -\n"
              "processes + zorsrv.exe: 1\n"
              "processes ~ svchost.exe: 2 -> 3\n"
              "services - <b>Old & odd</b>: Stopped\n"
              "services ~ ZOR Listener: Started -> Stopped\n"
              "zorProducts + copy C1\n"
              "computer ~ Service Pack: Service Pack 2 -> Service Pack 3\n");

    compared.changes.reset();
    compared.missing = "E4 has no snapshot after the install";
    compared.computer.reset();
    compared.computerMissing = "E4 has no computer report read whole";
    report.comparison = compared;
    std::ostringstream missing;
    WriteTextSummary(report, missing);
    EXPECT_NE(missing.str().find("Compared the after snapshot of E1 (copy C1) against the after snapshot of E4 "
                                 "(copy C2)\nNot compared: E4 has no snapshot after the install\n"
                                 "The computer reports not compared: E4 has no computer report read whole\n"),
              std::string::npos);
}

TEST(ReportWriters, ControlBytesFromTheHistoryReachTheConsoleAsQuestionMarks)
{
    HistoryReport report = SmallReport();
    report.computerName = "VM\x1b]0;owned\x07";
    report.copies[0].name = "C1\r\nC9 | E9 | Install | succeeded";
    report.copies[0].events[0].record.eventId = "E1\x1b[2J";
    report.copies[0].events[0].record.action = "Install\x7f";
    report.copies[0].events[0].record.result = "16\n03";
    std::ostringstream out;
    WriteTextSummary(OneSource(report), out);
    EXPECT_EQ(out.str(),
              "Computer VM?]0;owned?, Microsoft Windows XP Home Edition\n"
              "2 events of 1 copy in x.zip\n"
              "C1??C9 | E9 | Install | succeeded | E1?[2J | Install? | failed (16?03) | users 0 software 0 "
              "processes 2 services 1 zorProducts 1 odbcDrivers -\n"
              "C1??C9 | E9 | Install | succeeded | E2 | Upgrade | never ended | no snapshot after the install\n");
}

TEST(ReportWriters, TheJsonHasTheAgreedShape)
{
    std::ostringstream out;
    WriteJsonReport(OneSource(SmallReport()), out);
    const nlohmann::json json = nlohmann::json::parse(out.str());
    EXPECT_EQ(json["schemaVersion"], 1);
    EXPECT_EQ(json["firstTime"], "2006-10-12T10:00:00");
    EXPECT_TRUE(json["comparison"].is_null());
    EXPECT_EQ(json["machine"]["computer"], "VM");
    EXPECT_EQ(json["machine"]["os"], "Microsoft Windows XP Home Edition");
    const nlohmann::json& e1 = json["copies"][0]["events"][0];
    EXPECT_EQ(json["copies"][0]["copy"], "C1");
    EXPECT_EQ(e1["eventId"], "E1");
    EXPECT_EQ(e1["result"], "failed");
    EXPECT_EQ(e1["resultText"], "1603");
    EXPECT_EQ(e1["copy"], "C1");
    EXPECT_EQ(e1["start"], "2006-10-12T10:00:00");
    EXPECT_EQ(e1["end"], "2006-10-12T10:01:30");
    EXPECT_EQ(e1["changes"]["processes"]["added"],
              nlohmann::json::parse(R"([{"kind": "process", "image": "zorsrv.exe", "count": 1, "details": []}])"));
    EXPECT_EQ(e1["changes"]["processes"]["changed"][0],
              nlohmann::json::parse(R"({"kind": "process", "image": "svchost.exe", "before": {"count": 2},
                                        "after": {"count": 3}})"));
    EXPECT_EQ(e1["changes"]["services"]["removed"],
              nlohmann::json::parse(
                  R"([{"kind": "service", "displayName": "<b>Old & odd</b>", "state": "Stopped", "details": []}])"));
    EXPECT_EQ(e1["changes"]["zorProducts"]["added"][0]["details"],
              nlohmann::json::parse(R"([{"kind": "instance", "copy": "C1", "instance": "PROD"},
                                        {"kind": "instanceParameter", "copy": "C1", "instance": "PROD",
                                         "name": "Port", "value": "5000"}])"));
    EXPECT_TRUE(e1["changes"]["odbcDrivers"].is_null());
    EXPECT_TRUE(e1["sincePrevious"].is_null());
    EXPECT_TRUE(e1["computerChanges"].is_null());
    const nlohmann::json& e2 = json["copies"][0]["events"][1];
    EXPECT_TRUE(e2["changes"].is_null());
    EXPECT_EQ(e2["result"], "never ended");
    EXPECT_TRUE(e2["copy"].is_null());
    EXPECT_TRUE(e2["start"].is_null());
    EXPECT_EQ(e2["sincePrevious"]["since"],
              nlohmann::json::parse(R"({"eventId": "E1", "copy": "C1", "snapshot": "after"})"));
    EXPECT_EQ(e2["sincePrevious"]["eventsBetween"], nlohmann::json::parse(R"([{"eventId": "E7", "copy": "C2"}])"));
    EXPECT_EQ(e2["sincePrevious"]["drift"], false);
    EXPECT_EQ(e2["sincePrevious"]["changes"]["software"]["added"][0]["version"], "2.0");
    EXPECT_EQ(e2["computerChanges"]["drift"], true);
    EXPECT_EQ(e2["computerChanges"]["changes"]["changed"][0],
              nlohmann::json::parse(R"({"kind": "computerLine", "label": "Service Pack",
                                        "before": {"text": "Service Pack 1"}, "after": {"text": "Service Pack 2"}})"));
}

TEST(ReportWriters, TheJsonIsUtf8WhateverTheBytesGivenIt)
{
    HistoryReport report = SmallReport();
    report.computerName = "M\xC3\xA4schine\xE4\x01";
    std::ostringstream out;
    WriteJsonReport(OneSource(report), out);
    const nlohmann::json json = nlohmann::json::parse(out.str());
    EXPECT_EQ(json["machine"]["computer"], "M\xC3\xA4schine\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(ReportWriters, TheConsoleGetsNoC1ControlOfUtf8)
{
    HistoryReport report = SmallReport();
    report.computerName = "VM\xC2\x9B" "2J\xC2\xA0";
    std::ostringstream out;
    WriteTextSummary(OneSource(report), out);
    EXPECT_EQ(out.str().substr(0, out.str().find('\n')), "Computer VM?2J\xC2\xA0, Microsoft Windows XP Home Edition");
}

TEST(ReportWriters, TheHtmlEscapesEveryTextFromTheMachine)
{
    std::ostringstream out;
    WriteHtmlReport(OneSource(SmallReport()), out);
    const std::string html = out.str();
    EXPECT_EQ(html.find("<script"), std::string::npos);
    EXPECT_NE(html.find("&lt;script&gt;document.title=&#39;x&#39;&lt;/script&gt;"), std::string::npos);
    EXPECT_NE(html.find("&lt;b&gt;Old &amp; odd&lt;/b&gt;"), std::string::npos);
    EXPECT_NE(html.find("<title>ZOR installation history report</title>"), std::string::npos);
    EXPECT_EQ(html.find("src="), std::string::npos);
    // Links lead only to places on the page itself.
    for (std::size_t at = html.find("href="); at != std::string::npos; at = html.find("href=", at + 1))
        EXPECT_EQ(html.compare(at, 7, "href=\"#"), 0) << html.substr(at, 40);
}

TEST(ReportWriters, TheHtmlOpensTheSectionsWithChangesAndSaysSoInOneLineForTheOthers)
{
    std::ostringstream out;
    WriteHtmlReport(OneSource(SmallReport()), out);
    const std::string html = out.str();
    EXPECT_NE(html.find("<details open>\n<summary>Current Running Processes: 1 added, 0 removed, 1 changed</summary>"),
              std::string::npos);
    EXPECT_NE(html.find("<p class=\"none\">User Group &amp; User Information: no change.</p>"), std::string::npos);
    EXPECT_NE(html.find("ZOR ODBC Driver Info: not compared"), std::string::npos);
    EXPECT_NE(html.find("Not compared: no snapshot after the install."), std::string::npos);
}

TEST(ReportWriters, TheHtmlShowsTheValuesOfWhatCameOrWentAndWhatCameWithIt)
{
    std::ostringstream out;
    WriteHtmlReport(OneSource(SmallReport()), out);
    const std::string html = out.str();
    EXPECT_NE(html.find("<li class=\"removed\">&lt;b&gt;Old &amp; odd&lt;/b&gt;: Stopped</li>"), std::string::npos);
    EXPECT_NE(html.find("<li class=\"added\">copy C1\n<ul class=\"details\">\n<li>instance PROD</li>\n"
                        "<li>instance PROD: Port: 5000</li>\n</ul>\n</li>"),
              std::string::npos);
}

TEST(ReportWriters, TheHtmlNamesTheEventsThatRanSinceTheSnapshotBeforeAndMarksDrift)
{
    std::ostringstream out;
    WriteHtmlReport(OneSource(SmallReport()), out);
    const std::string html = out.str();
    EXPECT_NE(html.find("<h4>What changed since the after snapshot of E1 (copy C1), while these recorded events "
                        "ran: E7 (copy C2)</h4>"),
              std::string::npos);
    EXPECT_NE(html.find("<li class=\"added\">Tool: 2.0</li>"), std::string::npos);
    EXPECT_NE(html.find("<h4>The computer report since the start of E1 (copy C1): <span class=\"drift\">drift</span>"
                        "</h4>\n<details open>\n<summary>Computer: 0 added, 0 removed, 1 changed</summary>"),
              std::string::npos);
    EXPECT_NE(html.find("<tr><td>Service Pack</td><td>Service Pack 1</td><td>Service Pack 2</td></tr>"),
              std::string::npos);
}

// Nothing changed since the machine's last snapshot, and no event ran
// meanwhile: there is no drift to mark.
TEST(ReportWriters, TheHtmlMarksNoDriftWhereNothingChanged)
{
    HistoryReport report = SmallReport();
    EventReport& open = report.copies[0].events[1];
    open.sincePrevious->ranBetween.clear();
    open.sincePrevious->changes[1]->added.clear();
    open.computer->changes.changed.clear();
    std::ostringstream out;
    WriteHtmlReport(OneSource(report), out);
    const std::string html = out.str();
    EXPECT_NE(html.find("<h4>What changed since the after snapshot of E1 (copy C1), outside any recorded install</h4>"),
              std::string::npos);
    EXPECT_NE(html.find("<h4>The computer report since the start of E1 (copy C1), outside any recorded install</h4>"),
              std::string::npos);
    EXPECT_EQ(html.find("<span class=\"drift\">"), std::string::npos);
    std::ostringstream jsonOut;
    WriteJsonReport(OneSource(report), jsonOut);
    const nlohmann::json e2 = nlohmann::json::parse(jsonOut.str())["copies"][0]["events"][1];
    EXPECT_EQ(e2["sincePrevious"]["drift"], false);
    EXPECT_EQ(e2["computerChanges"]["drift"], false);
}

// An event whose lists and texts were cut to their limits.
HistoryReport CutReport()
{
    HistoryReport report = SmallReport();
    EventReport& event = report.copies[0].events[0];
    event.messages.push_back("long");
    event.messagesCut = {{1, 123456}};
    SectionChanges& processes = *(*event.changes)[2];
    processes.addedLeftOut = 7;
    processes.changedLeftOut = 3;
    processes.added[0].bytesCut = 42;
    processes.added[0].fields.bytesCut = 42;
    (*event.changes)[4]->added[0].detailsLeftOut = 9;
    return report;
}

TEST(ReportWriters, ThePageSaysWhatWasCutAndHowMuch)
{
    std::ostringstream out;
    WriteHtmlReport(OneSource(CutReport()), out);
    const std::string html = out.str();
    EXPECT_NE(html.find("<li>long <span class=\"cut\">(123456 bytes cut)</span></li>"), std::string::npos);
    EXPECT_NE(html.find("<li class=\"added\">zorsrv.exe: 1 <span class=\"cut\">(42 bytes cut)</span></li>\n"
                        "<li class=\"cut\">... and 7 more added, not shown</li>"),
              std::string::npos);
    EXPECT_NE(html.find("<p class=\"cut\">... and 3 more changed, not shown</p>"), std::string::npos);
    EXPECT_NE(html.find("<li class=\"cut\">... and 9 more details, not shown</li>\n</ul>"), std::string::npos);
    EXPECT_NE(html.find("Current Running Processes: 8 added, 0 removed, 4 changed"), std::string::npos);
}

TEST(ReportWriters, TheJsonSaysWhatWasCutAndHowMuch)
{
    std::ostringstream out;
    WriteJsonReport(OneSource(CutReport()), out);
    const nlohmann::json e1 = nlohmann::json::parse(out.str())["copies"][0]["events"][0];
    EXPECT_EQ(e1["messagesCut"], nlohmann::json::parse(R"([{"index": 1, "bytesCut": 123456}])"));
    EXPECT_EQ(e1["changes"]["processes"]["addedLeftOut"], 7);
    EXPECT_EQ(e1["changes"]["processes"]["removedLeftOut"], 0);
    EXPECT_EQ(e1["changes"]["processes"]["changedLeftOut"], 3);
    EXPECT_EQ(e1["changes"]["processes"]["added"][0]["bytesCut"], 42);
    EXPECT_EQ(e1["changes"]["zorProducts"]["added"][0]["detailsLeftOut"], 9);
    EXPECT_FALSE(e1["changes"]["services"]["removed"][0].contains("bytesCut"));
}

TEST(ReportOptionsTest, ASourceAloneWritesReportHtml)
{
    ReportOptions options;
    std::string error;
    ASSERT_TRUE(ParseReportOptions({"x.zip"}, options, error));
    EXPECT_EQ(options.sources, std::vector<std::string>{"x.zip"});
    EXPECT_EQ(options.htmlPath, "report.html");
    EXPECT_EQ(options.jsonPath, "");
}

TEST(ReportOptionsTest, JsonAloneWritesNoHtml)
{
    ReportOptions options;
    std::string error;
    ASSERT_TRUE(ParseReportOptions({"-json", "r.json", "store"}, options, error));
    EXPECT_EQ(options.sources, std::vector<std::string>{"store"});
    EXPECT_EQ(options.htmlPath, "");
    EXPECT_EQ(options.jsonPath, "r.json");
}

TEST(ReportOptionsTest, UsageErrorsAreTold)
{
    ReportOptions options;
    std::string error;
    EXPECT_FALSE(ParseReportOptions({}, options, error));
    EXPECT_EQ(error, "no source given");
    EXPECT_FALSE(ParseReportOptions({"a", "-o"}, options, error));
    EXPECT_EQ(error, "the option -o needs a file name");
    EXPECT_FALSE(ParseReportOptions({"a", "-x"}, options, error));
    EXPECT_EQ(error, "unknown option -x");
    EXPECT_FALSE(ParseReportOptions({"a", "-o", "1", "-o", "2"}, options, error));
    EXPECT_EQ(error, "the option -o is given twice");
    ASSERT_TRUE(ParseReportOptions({"-h"}, options, error));
    EXPECT_TRUE(options.help);
}

TEST(ReportOptionsTest, CompareNamesTwoEventsAndBeforeTakesTheFirstOnesBeforeSnapshot)
{
    ReportOptions options;
    std::string error;
    ASSERT_TRUE(ParseReportOptions({"x.zip", "-compare", "E1", "E2"}, options, error));
    EXPECT_EQ(options.compareFirst, "E1");
    EXPECT_EQ(options.compareSecond, "E2");
    EXPECT_FALSE(options.compareBefore);
    ASSERT_TRUE(ParseReportOptions({"-before", "-compare", "E1", "E1", "x.zip"}, options, error));
    EXPECT_TRUE(options.compareBefore);
    EXPECT_FALSE(ParseReportOptions({"x.zip", "-compare", "E1"}, options, error));
    EXPECT_EQ(error, "the option -compare needs two EventIDs");
    for (const char* option : {"-o", "-json", "-codepage", "-before", "-h"}) {
        EXPECT_FALSE(ParseReportOptions({"x.zip", "-compare", "E1", option, "r.html"}, options, error)) << option;
        EXPECT_EQ(error, "the option -compare needs two EventIDs") << option;
    }
    EXPECT_FALSE(ParseReportOptions({"x.zip", "-compare", "E1", "E2", "-compare", "E3", "E4"}, options, error));
    EXPECT_EQ(error, "the option -compare is given twice");
    EXPECT_FALSE(ParseReportOptions({"x.zip", "-before"}, options, error));
    EXPECT_EQ(error, "the option -before goes with -compare");
}

TEST(ReportOptionsTest, CodePageNamesAKnownAnsiCodePage)
{
    ReportOptions options;
    std::string error;
    ASSERT_TRUE(ParseReportOptions({"x.zip"}, options, error));
    EXPECT_EQ(options.codePage, 1252);
    for (const int codePage : {1250, 1251, 1252, 437}) {
        ASSERT_TRUE(ParseReportOptions({"x.zip", "-codepage", std::to_string(codePage)}, options, error));
        EXPECT_EQ(options.codePage, codePage);
    }
    const std::string known = "the option -codepage needs one of the code pages 1252, 1250, 1251 and 437";
    for (const char* wrong : {"932", "65001", "12x", "", "99999999999"}) {
        EXPECT_FALSE(ParseReportOptions({"x.zip", "-codepage", wrong}, options, error)) << wrong;
        EXPECT_EQ(error, known) << wrong;
    }
    EXPECT_FALSE(ParseReportOptions({"x.zip", "-codepage"}, options, error));
    EXPECT_EQ(error, known);
    EXPECT_FALSE(ParseReportOptions({"x.zip", "-codepage", "1250", "-codepage", "1251"}, options, error));
    EXPECT_EQ(error, "the option -codepage is given twice");
}

TEST(ReportWriters, TheTextSummaryLeavesOutAnOperatingSystemThatNoReportTold)
{
    HistoryReport report = SmallReport();
    report.operatingSystem.clear();
    std::ostringstream out;
    WriteTextSummary(OneSource(report), out);
    EXPECT_EQ(out.str().substr(0, out.str().find('\n')), "Computer VM");
}

TEST(ReportWriters, TheTextSummarySaysSoWhereNoComputerReportNamedTheComputer)
{
    HistoryReport report = SmallReport();
    report.computerName.clear();
    report.operatingSystem.clear();
    std::ostringstream out;
    WriteTextSummary(OneSource(report), out);
    EXPECT_EQ(out.str().substr(0, out.str().find('\n')), "Unknown computer");
}
