// The event log's stream: the one instance of the process, and the opening
// and closing of its file, which keep a failed state for the rest of the process.
#include "recorder/CLogger.h"

#include "platform/FileSystem.h"

CLogger::CLogger()
{
}

CLogger::~CLogger()
{
}

CLogger& CLogger::Instance()
{
    static CLogger logger;
    return logger;
}

// The file is opened through the stream's buffer rather than through
// std::ofstream::open, which would clear the state on success: once an open has
// failed, every later insertion of this process does nothing, even into a file
// that opens. The buffer's open goes to the C runtime's fopen, which on Windows
// opens with a sharing mode that denies nothing to other readers and writers.
void CLogger::Open(std::string path, int mode)
{
    if (rdbuf()->is_open() && rdbuf()->close() == nullptr)
        setstate(std::ios_base::failbit);
    const std::ios_base::openmode openMode =
        static_cast<std::ios_base::openmode>(mode) | std::ios_base::out;
    if (!platform::OpenFileBuffer(*rdbuf(), path, openMode))
        setstate(std::ios_base::failbit);
}

void CLogger::Close()
{
    if (rdbuf()->is_open() && rdbuf()->close() == nullptr)
        setstate(std::ios_base::failbit);
}
