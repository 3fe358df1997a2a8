// Takes what is written to std::cout while it lives.
#pragma once

#include <iostream>
#include <sstream>
#include <string>

class ConsoleCapture {
public:
    ConsoleCapture() : previous_(std::cout.rdbuf(captured_.rdbuf())) {}
    ~ConsoleCapture() { std::cout.rdbuf(previous_); }
    ConsoleCapture(const ConsoleCapture&) = delete;
    ConsoleCapture& operator=(const ConsoleCapture&) = delete;

    std::string Text() const { return captured_.str(); }

private:
    std::ostringstream captured_;
    std::streambuf* previous_;
};
