// The family of the collectors of the machine's state. Each one reads the
// machine only in Collect, into containers of its own, and reports only in
// Write, from what it holds, to the event log.
#pragma once

class Info {
public:
    // Lets a delete through an Info pointer reach the collector's destructor.
    virtual ~Info() {}
    // Reads the machine into the collector. The result is the collector's own,
    // and no caller looks at it.
    virtual int Collect() = 0;
    // Writes the collector's report to the CLogger stream.
    virtual int Write() = 0;
};
