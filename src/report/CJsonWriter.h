// Writes JSON as it goes, laid out as json's dump with an indent of 2 lays a
// document out: a member or an element on a line of its own, two blanks
// deeper than the object or array that holds it, and an empty object or
// array as "{}" or "[]". A value can be written at a depth of its own, so that
// an event's object written apart stands in the document as if it had been
// written there. The report writes each event as it is read, never holding
// the document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string_view>
#include <vector>

class CJsonWriter {
public:
    // Each line behind the value's first begins with `indent` blanks more.
    explicit CJsonWriter(std::ostream& out, std::size_t indent = 0);

    CJsonWriter& Object();
    CJsonWriter& Array();
    // Ends the object or array begun last.
    CJsonWriter& End();
    // The name of the object's next member, whose value follows.
    CJsonWriter& Key(std::string_view key);

    // Text in UTF-8, escaped as JSON needs.
    CJsonWriter& Text(std::string_view utf8);
    CJsonWriter& Number(std::uint64_t number);
    CJsonWriter& SignedNumber(long long number);
    CJsonWriter& Bool(bool value);
    CJsonWriter& Null();
    // The stream, placed where the next value goes, for a value that is
    // written apart at the depth that Depth() then gives.
    std::ostream& ValueWrittenApart();
    // The blanks that a line of the object or array begun last begins with;
    // each line behind the first of a value placed in it begins with them
    // too, or with more.
    std::size_t Depth() const;

private:
    struct Level {
        char closing;
        bool empty;
    };

    CJsonWriter& Open(char opening, char closing);
    // Puts the next value in its place: on a line of its own in an array,
    // behind its name in an object.
    void Place();
    void NewLine(std::size_t blanks);
    // The text in quotes, escaped.
    void Quoted(std::string_view utf8);
    template <typename Integer>
    void Digits(Integer number);

    std::ostream& out_;
    std::size_t indent_;
    std::vector<Level> levels_;
    bool named_ = false;
};
