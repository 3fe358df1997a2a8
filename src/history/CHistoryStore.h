// The history store of this machine: set-up, the count of recorded events,
// the recorder's entry and the collection into a zip file.
#pragma once

#include <string>
#include <vector>

class CHistoryStore {
public:
    // Reads Count from History.ini; a missing file leaves 0.
    CHistoryStore();
    ~CHistoryStore();

    // Set-up of the store; true if it stands ready.
    bool Initialize();
    // Writes `count` as key Count of section History.
    void WriteCount(int count);

    // The recorder's entry: 0 done, 1 the store could not be set up, 2 the
    // options don't suffice.
    int Record(int& argc, char** argv);

    // Writes the summaries, then packs the history folder; true if the archive
    // was written.
    bool CollectHistory(const std::string& zipFileName);
    bool CreateZip(const std::string& zipFileName);

    bool WriteSummary();
    bool HistoryFileExists();
    std::vector<std::string>& ListEvents(std::vector<std::string>& events);

    int Count;

private:
    // Count as History.ini holds it now; 0 when the file or key is missing.
    int ReadCount();
    // The two folders of the store, made where they are missing; true if both stand.
    bool MakeFolders(bool tellFailure);
};
