// SPDX-License-Identifier: MIT
#include "testing/term_file.h"

#include <utility>

#include "platform/whole_file.h"
#include "testing/rule_line.h"
#include "text/fields.h"
#include "text/list_text.h"
#include "text/unicode.h"

namespace quillon {

namespace {

// A folder that changed this short a time ago may change again within the same tick of its clock, unseen.
constexpr std::int64_t kTickNanoseconds = 50'000'000;

constexpr unsigned kLookUpsPerFolderCheck = 64;

// Names of recovered files may end in anything: what is kept of extensions without a term file has a bound.
constexpr std::size_t kMostEntries = 8192;

std::string foldedFileName(std::u16string_view extension) {
    return toNative(lowered(std::u16string(extension))) + ".dat";
}

bool changedJustNow(const FileTime& changed) {
    const FileTime now = fileTimeNow();
    const std::int64_t nanoseconds = std::int64_t{now.nanoseconds} - changed.nanoseconds;
    return (now.seconds - changed.seconds) * 1'000'000'000 + nanoseconds < kTickNanoseconds;
}

}  // namespace

Result<NativePath> termFilePath(const NativePath& databaseFolder, std::string_view extension) {
    const std::string name = foldedName(extension) + ".dat";
    auto path = childPath(databaseFolder, name);
    if (!path || pathExists(*path))
        return path;
    if (const auto names = listFiles(databaseFolder)) {
        for (const auto& other : *names) {
            if (foldedName(other) == name)
                return databaseFolder / other;
        }
    }
    return path;
}

std::vector<HeaderTerm> parseTermFile(std::string_view bytes) {
    std::vector<HeaderTerm> rows;
    for (const auto line : splitLines(bytes)) {
        const auto fields = splitFields(line);
        if (fields.size() < 2)
            continue;
        const auto field = [&fields](std::size_t i) {
            return PageText{i < fields.size() ? std::string(fields[i]) : std::string()};
        };
        rows.push_back({field(0), field(1), field(2)});
    }
    return rows;
}

Result<std::vector<HeaderTerm>> loadTermFile(const NativePath& path) {
    return readRuleFile(path).map([](const std::string& bytes) { return parseTermFile(bytes); });
}

std::string termFileBytes(const std::vector<HeaderTerm>& rows) {
    std::string bytes;
    for (const auto& row : rows) bytes += row.offset.bytes + "," + row.term.bytes + "," + row.type.bytes + "\r\n";
    return bytes;
}

Result<void> saveTermFile(const NativePath& path, const std::vector<HeaderTerm>& rows) {
    return saveWholeFile(path, termFileBytes(rows), TemporaryPlace::AboveFolder);
}

SharedTerms TermFiles::find(std::u16string_view extension) {
    auto found = entries_.find(extension);
    if (looks_ == Looks::Once && found != entries_.end())
        return found->second.exists ? found->second.terms : nullptr;
    if (lookUps_++ % kLookUpsPerFolderCheck == 0 || !handle_.isOpen()) {
        checkFolder();
        found = entries_.find(extension);
    }
    if (found == entries_.end()) {
        if (entries_.size() >= kMostEntries)
            entries_.clear();
        found = entries_.emplace(extension, Entry{}).first;
        found->second.foldedName = foldedFileName(extension);
    }
    Entry& entry = found->second;
    if (!entry.exists || !refresh(entry))
        locate(entry);
    return entry.exists ? entry.terms : nullptr;
}

bool TermFiles::mayHave(std::u16string_view extension) {
    const auto known = entries_.find(extension);
    return known != entries_.end() ? known->second.exists : find(extension) != nullptr;
}

// The folder may have been put aside and another one put in its place.
void TermFiles::checkFolder() {
    const auto there = fileStamp(folder_);
    const auto held = handle_.isOpen() ? handle_.stamp() : Result<FileStamp>(FileStamp{});
    if (there && held && there->inode == held->inode)
        return;
    handle_.close();
    entries_.clear();
    listedAt_.reset();
    auto opened = Directory::openToLookUp(folder_);
    if (opened)
        handle_ = std::move(*opened);
    else
        tellOnce({}, opened.error());
}

void TermFiles::tell(const FileError& why) const {
    if (onProblem_)
        onProblem_(why);
}

void TermFiles::tellOnce(const std::string& name, const FileError& why) {
    if (toldNames_.insert(name).second)
        tell(why);
}

// True when the file is there; its terms are then those of this moment.
bool TermFiles::refresh(Entry& entry) {
    const auto stamp = handle_.stampOf(entry.name);
    if (!stamp) {
        if (stamp.error().kind != ErrorKind::NotFound)
            tellOnce(entry.name, stamp.error());
        entry.exists = false;
        return false;
    }
    if (entry.exists && !entry.mayBeStale && *stamp == entry.stamp)
        return true;
    entry.exists = true;
    entry.stamp = *stamp;
    entry.mayBeStale = changedJustNow(stamp->changed);
    entry.terms = std::make_shared<const std::vector<CompiledTerm>>();
    // A file that vanished or cannot be opened by now has no terms, and so none that match.
    const auto bytes = readRuleFile(folder_ / entry.name);
    if (!bytes) {
        tellUnreadable(entry, bytes.error());
        return true;
    }
    std::vector<CompiledTerm> terms;
    for (const auto line : splitLines(*bytes)) terms.push_back(CompiledTerm::fromTermFileLine(line));
    entry.terms = std::make_shared<const std::vector<CompiledTerm>>(std::move(terms));
    return true;
}

// Once for each state of the file.
void TermFiles::tellUnreadable(Entry& entry, const FileError& why) {
    if (entry.toldAt != entry.stamp)
        tell(why);
    entry.toldAt = entry.stamp;
}

// An extension whose file is not known to exist costs one look at the folder, not one at the file.
void TermFiles::locate(Entry& entry) {
    const auto stamp = handle_.stamp();
    if (!stamp)
        return tellOnce({}, {stamp.error().kind, readable(folder_.native()) + ": " + stamp.error().cause});
    if (listingMayBeStale_ || !listedAt_ || *listedAt_ != *stamp) {
        listedAt_ = *stamp;
        listFolder();
    }
    const auto name = names_.find(entry.foldedName);
    if (name == names_.end())
        return;
    entry.name = name->second;
    passOver(refresh(entry), "the entry itself tells whether the file is still there");
}

void TermFiles::listFolder() {
    names_.clear();
    listingMayBeStale_ = changedJustNow(listedAt_->modified);
    const auto names = listEntries(folder_);
    if (!names) {
        tellOnce({}, names.error());
        return;
    }
    for (const auto& name : *names) {
        if (isTemporaryName(name))
            continue;
        std::string folded = foldedName(name);
        // Of two files that differ in case alone, the one in lower case is the extension's.
        const bool exact = folded == name;
        auto& chosen = names_[std::move(folded)];
        if (chosen.empty() || exact || (chosen > name && foldedName(chosen) != chosen))
            chosen = name;
    }
}

}  // namespace quillon
