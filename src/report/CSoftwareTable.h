// The software table of a machine's snapshots, read from the one read before
// it: the snapshots list the same software again but a few rows (an install
// changes a few versions, an update adds a row), and the software is the
// largest of their sections. The rows that stand where they stood, as they
// stood, are not read again, and where few rows changed, the section is the
// one read before with the things of those rows' names read anew.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "report/CTextStore.h"
#include "report/SectionReaders.h"
#include "report/SectionText.h"
#include "report/Snapshot.h"

class CSoftwareTable {
public:
    // Each product by its name, with its version, as ReadSoftwareSection
    // reads it; the lines and what was read of them take the place of the
    // ones read before.
    std::shared_ptr<SnapshotSection> Read(const SectionLines& lines);

private:
    // A row of the table, and where the name and the version read of it
    // stand in it.
    struct Row {
        std::string_view text;
        std::size_t nameAt = 0;
        std::size_t nameSize = 0;
        std::size_t versionAt = 0;
        std::size_t versionSize = 0;

        std::string_view Name() const { return text.substr(nameAt, nameSize); }
        std::string_view Version() const { return text.substr(versionAt, versionSize); }
    };

    bool ReadRows(const SectionLines& lines, CTextStore& kept, std::vector<Row>& rows,
                  std::vector<bool>& changed) const;
    static Row ReadRow(std::string_view text, RowSearchBudget& budget);
    // The section of the rows read whole.
    std::shared_ptr<SnapshotSection> Whole(const std::vector<Row>& rows);

    // Whether the section read before may be the one that the changed rows
    // are put into: each section so made shares the blocks of text of those
    // it came from, and one that would share more than twice those of the
    // last section read whole, and a few, is read whole again, so that what
    // the sections hold stays bounded.
    bool Patchable(std::size_t changedRows, std::size_t rows) const;

    bool Unchanged(std::size_t place, std::string_view text) const;
    std::vector<std::string_view> ChangedNames(const std::vector<Row>& rows, const std::vector<bool>& changed) const;
    std::shared_ptr<SnapshotSection> Patched(const std::vector<Row>& rows, const std::vector<bool>& changed) const;

    CTextStore texts_;
    std::vector<Row> rows_;
    // Every row was read without a search of its readings, so that it reads
    // the same whatever was searched for the rows before it.
    bool readAlone_ = false;
    std::shared_ptr<const SnapshotSection> section_;
    std::size_t wholeBlocks_ = 0;
};
