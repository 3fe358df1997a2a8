#include "zip/EntryQueue.h"

#include <algorithm>
#include <system_error>

namespace {

// A file larger than this is deflated by the writing thread, streaming, so
// that a deflating thread never holds more of a file than its slot's buffers.
constexpr std::uint64_t kLargestFileDeflatedAhead = 4 * 1024 * 1024;

// The entries in flight when threads deflate, four for each thread: enough
// that a long file at the head of the queue, which the writing thread waits
// for, leaves the other threads files to deflate behind it (a third of the
// entries of a store are folders', which take a slot too). At most sixteen,
// so that the slots' memory stays within its bound (about 21 MB) even when
// every file fills its output buffer; each slot in use touches about 400 KB.
constexpr std::size_t kSlotsPerThread = 4;
constexpr std::size_t kMostSlots = 16;

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

}  // namespace

EntryQueue::EntryQueue(void* zip, unsigned threadCount, ZipCounters& archiveCounters)
    : zipHandle(zip), counters(archiveCounters)
{
    const unsigned deflating = threadCount > 1 ? std::min(threadCount, kMaxDeflatingThreads) : 0;
    const std::size_t slotCount = deflating > 0 ? std::min(kSlotsPerThread * deflating, kMostSlots) : 1;
    for (std::size_t i = 0; i < slotCount; ++i)
        slots.push_back(std::make_unique<PendingEntry>());
    states.assign(slotCount, SlotState::Free);
    // A thread that the system refuses leaves its work to the others, or to
    // the writing thread when none started.
    try {
        for (unsigned i = 0; i < deflating; ++i)
            deflatingThreads.emplace_back(&EntryQueue::Deflate, this);
    } catch (const std::system_error&) {
    }
}

EntryQueue::~EntryQueue()
{
    WriteAll();
    {
        const std::lock_guard<std::mutex> lock(mutex);
        stopping = true;
    }
    workQueued.notify_all();
    for (std::thread& thread : deflatingThreads)
        thread.join();
}

PendingEntry& EntryQueue::NextSlot()
{
    while (inFlight == slots.size())
        lastWritten = WriteOldest();
    return *slots[(oldest + inFlight) % slots.size()];
}

void EntryQueue::Submit()
{
    PendingEntry& entry = *slots[(oldest + inFlight) % slots.size()];
    const bool ahead = !deflatingThreads.empty() && entry.IsFileEntry() &&
                       entry.File().Size() <= kLargestFileDeflatedAhead;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        states[(oldest + inFlight) % slots.size()] = ahead ? SlotState::Queued : SlotState::WritersOwn;
        ++inFlight;
    }
    if (ahead)
        workQueued.notify_one();
}

bool EntryQueue::WriteAll()
{
    while (inFlight > 0)
        lastWritten = WriteOldest();
    return lastWritten;
}

// A deflating thread takes the oldest entry that waits for one and deflates
// as much of it as its slot holds.
void EntryQueue::Deflate()
{
    platform::HoldBackLeaseSignalsInThisThread();
    std::unique_lock<std::mutex> lock(mutex);
    for (;;) {
        const std::size_t next = FirstQueued();
        if (next == kNone) {
            if (stopping)
                return;
            workQueued.wait(lock);
            continue;
        }
        states[next] = SlotState::Deflating;
        lock.unlock();
        slots[next]->DeflateSome();
        lock.lock();
        states[next] = SlotState::Deflated;
        entryDeflated.notify_all();
    }
}

std::size_t EntryQueue::FirstQueued() const
{
    for (std::size_t i = 0; i < inFlight; ++i) {
        const std::size_t slot = (oldest + i) % slots.size();
        if (states[slot] == SlotState::Queued)
            return slot;
    }
    return kNone;
}

// The oldest entry is written once no deflating thread holds it; one that no
// thread has taken yet the writing thread deflates itself rather than wait.
bool EntryQueue::WriteOldest()
{
    {
        std::unique_lock<std::mutex> lock(mutex);
        if (states[oldest] == SlotState::Queued)
            states[oldest] = SlotState::WritersOwn;
        entryDeflated.wait(lock, [this] { return states[oldest] != SlotState::Deflating; });
    }
    const bool written = WriteEntry(*slots[oldest]);
    const std::lock_guard<std::mutex> lock(mutex);
    states[oldest] = SlotState::Free;
    oldest = (oldest + 1) % slots.size();
    --inFlight;
    return written;
}

// The entry's header goes out once zlib has made its first block of output,
// with which it guesses whether the data is text, as minizip's header says;
// the data follows piece by piece, and the entry closes with its CRC and size.
// Its file is then closed, and it is counted as minizip's own entry was: once
// begun, with every byte read.
bool EntryQueue::WriteEntry(PendingEntry& entry)
{
    if (entry.OutputSize() == 0 && !entry.Finished())
        entry.DeflateSome();
    const zip_fileinfo info = entry.HeaderInfo();
    int result = zipOpenNewFileInZip2(zipHandle, entry.Name(), &info, nullptr, 0, nullptr, 0, nullptr,
                                      Z_DEFLATED, Z_DEFAULT_COMPRESSION, 1);
    if (result == ZIP_OK) {
        result = WriteData(entry);
        if (entry.IsFileEntry()) {
            ++counters.fileCount;
            counters.uncompressedBytes += static_cast<std::uint32_t>(entry.BytesRead());
        }
    }
    zipCloseFileInZipRaw64(zipHandle, entry.BytesRead(), entry.Crc());
    entry.End();
    return result == ZIP_OK && !entry.Failed();
}

// Writes the compressed data as the slot's buffer holds it, deflating the
// rest of the file here; stops at the first failed write.
int EntryQueue::WriteData(PendingEntry& entry)
{
    for (;;) {
        const int result = zipWriteInFileInZip(zipHandle, entry.Output(), entry.OutputSize());
        entry.OutputWritten();
        if (result != ZIP_OK || entry.Finished())
            return result;
        entry.DeflateSome();
    }
}
