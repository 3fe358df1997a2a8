// The one output stream of the recorder: every line of an event log, from the
// banners to the collectors' reports, is inserted into this singleton with the
// ordinary stream operators.
#pragma once

#include <fstream>
#include <string>

class CLogger : public std::basic_ofstream<char> {
public:
    // The process-wide stream, made at first use and destroyed at exit.
    static CLogger& Instance();

    // Closes any open file, then opens `path` with `mode` (std::ios_base::out
    // or std::ios_base::app) for writing, in text mode. A failure sets failbit;
    // a success leaves the stream's state as it was.
    void Open(std::string path, int mode);
    // Closes the file, which flushes it; nothing when no file is open.
    void Close();

    virtual ~CLogger();

    CLogger(const CLogger&) = delete;
    CLogger& operator=(const CLogger&) = delete;

private:
    CLogger();

    // Built and destroyed with the logger, and never used.
    std::string Lines[255];
};
