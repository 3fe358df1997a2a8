// The entries of an archive in flight: they go into the archive in the order
// in which they are handed over, while threads of the queue's own deflate the
// files among them ahead of the writing. The writing thread is the caller's:
// it walks, opens each file, and writes each finished entry through minizip's
// raw writes, with the CRC and size that the deflate found.
//
// A fixed number of slots (PendingEntry) is made when the queue is, so the
// memory of the entries in flight is bounded whatever the files hold. The
// writing thread deflates a folder's entry and a file larger than a deflating
// thread takes itself, streaming as it writes, and the rest of any file whose
// compressed data outgrew its slot's buffer. With one thread there are no
// deflating threads and the writing thread deflates every entry. The archive's
// bytes are the same whatever the number of threads.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "zip/PendingEntry.h"
#include "zip/ZipCounters.h"

class EntryQueue {
public:
    // `threadCount` threads deflate: with one, the caller's thread alone; with
    // more, that many of the queue's own (at most kMaxDeflatingThreads).
    EntryQueue(void* zipHandle, unsigned threadCount, ZipCounters& counters);
    // Writes what is still in flight, then ends the deflating threads.
    ~EntryQueue();
    EntryQueue(const EntryQueue&) = delete;
    EntryQueue& operator=(const EntryQueue&) = delete;

    // More deflating threads than this would find too few entries in flight.
    static constexpr unsigned kMaxDeflatingThreads = 8;

    // The slot for the next entry: while every slot is in flight, the oldest
    // entries are written to make room.
    PendingEntry& NextSlot();
    // Puts the slot that NextSlot gave, begun, in flight.
    void Submit();
    // Writes every entry in flight; whether the last one went in whole.
    bool WriteAll();

private:
    enum class SlotState { Free, Queued, WritersOwn, Deflating, Deflated };

    void Deflate();
    std::size_t FirstQueued() const;
    bool WriteOldest();
    bool WriteEntry(PendingEntry& entry);
    int WriteData(PendingEntry& entry);

    void* zipHandle;
    ZipCounters& counters;
    std::vector<std::unique_ptr<PendingEntry>> slots;
    // Guarded by `mutex`: the states, the ring's window and the stop.
    std::vector<SlotState> states;
    std::size_t oldest = 0;
    std::size_t inFlight = 0;
    bool stopping = false;
    std::mutex mutex;
    std::condition_variable workQueued;
    std::condition_variable entryDeflated;
    std::vector<std::thread> deflatingThreads;
    bool lastWritten = true;
};
