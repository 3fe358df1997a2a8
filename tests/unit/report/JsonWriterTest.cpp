// The JSON writer lays a document out as json's own dump with an indent of 2
// does, escapes every text that JSON can't hold as it stands, and writes a
// value apart at its depth so that it stands in the document unchanged.
#include <locale>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "report/CJsonWriter.h"

namespace {

using json = nlohmann::ordered_json;

// Every character below a blank, the two that JSON escapes by name, and text
// beyond ASCII.
std::string AwkwardText()
{
    std::string text;
    for (char c = 1; c < 0x20; ++c)
        text += c;
    return text + "\"quoted\" back\\slash \x7f caf\xc3\xa9 \xe2\x82\xac";
}

}  // namespace

TEST(JsonWriter, ADocumentIsLaidOutAsJsonsOwnDumpLaysItOut)
{
    std::ostringstream out;
    CJsonWriter writer(out);
    writer.Object().Key("empty object").Object().End();
    writer.Key("empty array").Array().End();
    writer.Key("numbers").Array().Number(0).Number(18446744073709551615ull).SignedNumber(-42).End();
    writer.Key("flags").Array().Bool(true).Bool(false).Null().End();
    writer.Key("nested").Array().Object().Key("a").Array().Object().End().End().End().Array().End().End();
    writer.Key(AwkwardText()).Text(AwkwardText());
    writer.End();

    json expected = json::object();
    expected["empty object"] = json::object();
    expected["empty array"] = json::array();
    expected["numbers"] = {0u, 18446744073709551615ull, -42};
    expected["flags"] = {true, false, nullptr};
    expected["nested"] = json::array({json::object({{"a", json::array({json::object()})}}), json::array()});
    expected[AwkwardText()] = AwkwardText();
    EXPECT_EQ(out.str(), expected.dump(2));
}

TEST(JsonWriter, AValueWrittenApartStandsInTheDocumentAsIfWrittenThere)
{
    std::ostringstream out;
    CJsonWriter writer(out);
    writer.Object().Key("events").Array();
    for (const char* id : {"E1", "E2"}) {
        const std::size_t depth = writer.Depth();
        std::ostream& apart = writer.ValueWrittenApart();
        std::ostringstream value;
        CJsonWriter(value, depth).Object().Key("eventId").Text(id).Key("notes").Array().Text("n").End().End();
        apart << value.str();
    }
    writer.End().End();

    const json expected = {{"events", {{{"eventId", "E1"}, {"notes", {"n"}}}, {{"eventId", "E2"}, {"notes", {"n"}}}}}};
    EXPECT_EQ(out.str(), expected.dump(2));
}

// A locale that groups the digits of numbers by thousands.
struct GroupedDigits : std::numpunct<char> {
    char do_thousands_sep() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(JsonWriter, NumbersAreWrittenAsJsonWritesThemWhateverTheStreamsLocale)
{
    std::ostringstream out;
    out.imbue(std::locale(out.getloc(), new GroupedDigits));
    CJsonWriter(out).Array().Number(1234567).SignedNumber(-7654321).End();
    EXPECT_EQ(out.str(), "[\n  1234567,\n  -7654321\n]");
}
