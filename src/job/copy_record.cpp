// SPDX-License-Identifier: MIT
#include "job/copy_record.h"

#include <map>

#include <fmt/format.h>

#include "app/folder_structure.h"
#include "evidence/name_text.h"
#include "job/copy_queue.h"
#include "platform/folders.h"
#include "text/fields.h"

namespace quillon {

namespace {

constexpr std::string_view kGapsHead = "path,offset,length";

// In quotes, each of its own doubled.
std::string csvField(std::string_view text) {
    std::string field = "\"";
    for (const char c : text) field += c == '"' ? std::string("\"\"") : std::string(1, c);
    return field + '"';
}

// The first field of a row, with its quotes.
std::string_view csvFieldAt(std::string_view row) {
    return row.substr(0, row.rfind("\",") + 1);
}

std::vector<NativePath> places(NativePath (*placeIn)(const NativePath&, const std::string&), const NativePath& target,
                               const NativePath& besideList, const std::string& jobId) {
    std::vector<NativePath> paths = {placeIn(target, jobId)};
    if (!besideList.empty() && realPath(besideList) != realPath(target))
        paths.push_back(placeIn(besideList, jobId));
    return paths;
}

// Of runs of this computer that were killed: beginnings of the lists, which the notes tell better. The target leaves
// the house, and nobody else would tidy it.
void removeListsOfKilledRuns(const NativePath& target) {
    const auto names = listEntries(target);
    if (!names)
        return;
    for (const auto& name : *names) {
        if (isOfGoneProcess(name) && isRegularFile(target / name))
            passOver(removeFile(target / name), "it is tidying; the next run tries again");
    }
}

}  // namespace

NativePath manifestIn(const NativePath& folder, const std::string& jobId) {
    return folder / (jobId + ".sha256");
}

NativePath damagedIn(const NativePath& folder, const std::string& jobId) {
    return folder / (jobId + "-damaged.sha256");
}

NativePath gapsIn(const NativePath& folder, const std::string& jobId) {
    return folder / (jobId + ".gaps.csv");
}

Result<CopyRecord> CopyRecord::begin(const NativePath& target, const NativePath& besideList, const std::string& jobId) {
    createFolderChain((target / "file").native());
    removeListsOfKilledRuns(target);
    auto whole = CheckSumFile::begin(places(manifestIn, target, besideList, jobId));
    if (!whole)
        return failure(whole.error());
    auto damaged = CheckSumFile::begin(places(damagedIn, target, besideList, jobId));
    if (!damaged)
        return failure(damaged.error());
    const NativePath gaps = gapsIn(besideList.empty() ? target : besideList, jobId);
    return CopyRecord(withOneSlash(target.native()), gaps, copyJournalIn(target, jobId), *std::move(whole),
                      *std::move(damaged));
}

Result<void> CopyRecord::note(const SettledCopy& copy) {
    if (!copy.result || !copy.result->hash || !copy.target.starts_with(root_))
        return {};
    const std::string_view name = std::string_view(copy.target).substr(root_.size());
    journal_.add(name, *copy.result);
    return note(name, *copy.result);
}

Result<void> CopyRecord::note(std::string_view name, const CopyFacts& facts) {
    const bool whole = facts.gaps.empty();
    (whole ? damaged_ : whole_).drop(name);
    noteGaps(name, facts);
    return (whole ? whole_ : damaged_).add(name, *facts.hash);
}

// The last word on each file that this run has no word on.
Result<void> CopyRecord::noteOfKilledRun() {
    std::map<std::string, CopyFacts> noted;
    auto done = readCopyJournal(journalPath_, [this, &noted](NotedCopy copy) {
        if (!whole_.isNamed(copy.name))
            noted[std::move(copy.name)] = std::move(copy.facts);
    });
    for (const auto& [name, facts] : noted)
        done = done.and_then([&, &file = name, &what = facts] { return note(file, what); });
    return done;
}

Result<void> CopyRecord::renamed(const std::string& from, const std::string& to) {
    return whole_.remark(from + " -> " + to);
}

Result<void> CopyRecord::finish() {
    auto done = noteOfKilledRun()
                    .and_then([this] { return whole_.finish(); })
                    .and_then([this] { return damaged_.finish(); })
                    .and_then([this] { return finishGaps(); });
    if (done)
        journal_.remove();
    return done;
}

void CopyRecord::noteGaps(std::string_view name, const CopyFacts& facts) {
    const std::string field = csvField(nameText(name));
    for (const ByteRange& gap : facts.gaps) gaps_ += fmt::format("{},{},{}\r\n", field, gap.begin, gap.bytes());
    if (hasOlderGaps_)
        copied_.insert(field);
}

// Rows of files that were not copied now stay.
Result<void> CopyRecord::finishGaps() {
    if (gaps_.empty() && !hasOlderGaps_)
        return {};
    std::string rows;
    if (hasOlderGaps_) {
        const auto older = readWholeFile(gapsPath_);
        if (!older)
            return failure(older.error());
        for (const auto line : splitLines(*older)) {
            const bool ours = line == kGapsHead || copied_.contains(std::string(csvFieldAt(line)));
            rows += ours || line.empty() ? std::string() : std::string(line) + "\r\n";
        }
    }
    rows += gaps_;
    return rows.empty() ? removeFile(gapsPath_) : saveWholeFile(gapsPath_, fmt::format("{}\r\n{}", kGapsHead, rows));
}

}  // namespace quillon
