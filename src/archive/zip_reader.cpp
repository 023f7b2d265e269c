// SPDX-License-Identifier: MIT
#include "archive/zip_reader.h"

#include <algorithm>
#include <array>
#include <functional>
#include <optional>
#include <string_view>
#include <unordered_map>

#include <fmt/format.h>

#include "app/folder_structure.h"
#include "archive/entry_names.h"
#include "archive/file_mask.h"
#include "archive/zip_handle.h"
#include "platform/file_batch.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/list_text.h"

namespace quillon {

namespace {

constexpr unsigned kModeTypeMask = 0xF000;
constexpr unsigned kModeFolder = 0x4000;
constexpr unsigned kModeRegular = 0x8000;

struct Entry {
    zip_uint64_t index = 0;
    std::string name;                // as the archive has it, UTF-8
    std::uint64_t size = 0;          // as it really comes, known behind the trial
    std::vector<std::string> place;  // below the target folder
};

// True for a regular file, a folder or an entry that does not say. Writers of all systems put a link's mode into the
// upper half of the attributes.
bool isPlainEntry(zip_t* archive, zip_uint64_t index) {
    zip_uint8_t system = 0;
    zip_uint32_t attributes = 0;
    if (zip_file_get_external_attributes(archive, index, 0, &system, &attributes) != 0)
        return false;
    const unsigned type = (attributes >> 16U) & kModeTypeMask;
    return type == 0 || type == kModeRegular || type == kModeFolder;
}

class Extraction {
public:
    Extraction(const NativePath& archive, const NativePath& target, const ExtractOptions& options)
        : archive_(archive), target_(target), options_(options) {}

    Result<Extracted> run() {
        auto handle = openZip(archive_);
        if (!handle)
            return failure(handle.error());
        zip_ = std::move(*handle);
        return judgeNames().and_then([this] { return tryAll(); }).and_then([this] { return writeAll(); });
    }

private:
    using Sink = std::function<Result<void>(std::string_view bytes)>;
    using Names = std::unordered_multimap<std::string, std::string>;

    Result<void> judgeNames();
    Result<void> judgeEntry(zip_uint64_t index);
    Result<void> tryAll();
    Result<Extracted> writeAll();
    void advance(std::size_t steps);
    Result<void> writeOne(const Entry& entry, Extracted& done);
    Result<void> writeHeld(const Entry& entry, const NativePath& path);
    Result<void> writeLarge(const Entry& entry, const NativePath& path);
    Result<void> keepOld(const NativePath& path, std::optional<std::string_view> bytes);
    Result<void> save(const NativePath& path, const std::string& bytes, bool inSubfolder);
    void removeReplaced();
    Result<void> checkInside(const NativePath& path) const;
    const Names& namesIn(const NativePath& folder);
    NativePath otherCaseOf(const NativePath& path);
    Result<std::uint64_t> unpack(const Entry& entry, const Sink& take);
    FileError entryError(const Entry& entry, zip_error_t* error) const;

    const NativePath& archive_;
    const NativePath& target_;
    const ExtractOptions& options_;
    ZipHandle zip_;
    std::vector<Entry> entries_;
    TakenPlaces taken_;
    std::unordered_map<std::string, Names> folders_;
    FileBatch batch_;
    std::vector<NativePath> replaced_;
    std::uint64_t bytes_ = 0;  // unpacked in the present round
    std::size_t steps_ = 0;    // done
};

Result<void> Extraction::judgeNames() {
    const zip_int64_t count = zip_get_num_entries(zip_.get(), 0);
    if (count < 0 || static_cast<std::size_t>(count) > kEntryLimit)
        return failure(ErrorKind::PathAccess, readable(archive_.native()) + ": too many files in the archive");
    for (zip_uint64_t i = 0; i < static_cast<zip_uint64_t>(count); ++i) {
        if (auto judged = judgeEntry(i); !judged)
            return judged;
    }
    return {};
}

Result<void> Extraction::judgeEntry(zip_uint64_t index) {
    const char* name = zip_get_name(zip_.get(), index, 0);
    if (name == nullptr)
        return failure(zipError(archive_, zip_get_error(zip_.get())));
    Entry entry{index, name, 0, {}};
    const auto parts = entryParts(entry.name);
    if (!parts)
        return failure(parts.error());
    if (!isPlainEntry(zip_.get(), index))
        return failure(ErrorKind::BadName, "The archive holds a link: " + readable(entry.name));
    const bool folder = entry.name.back() == '/';
    entry.place = canonicalParts(*parts);
    if (auto taken = taken_.take(entry.place, folder); !taken)
        return taken;
    if (folder || !matchesFileMask(parts->back(), options_.mask))
        return {};
    if (!options_.useFolders)
        entry.place = {settingsSpelling(entry.place.back())};
    entries_.push_back(std::move(entry));
    return {};
}

FileError Extraction::entryError(const Entry& entry, zip_error_t* error) const {
    auto failed = zipError(archive_, error);
    failed.text += " (" + readable(entry.name) + ")";
    return failed;
}

// Piece by piece; gives the size of the whole.
Result<std::uint64_t> Extraction::unpack(const Entry& entry, const Sink& take) {
    const ZipFileHandle file(zip_fopen_index(zip_.get(), entry.index, 0));
    if (!file)
        return failure(entryError(entry, zip_get_error(zip_.get())));
    std::uint64_t size = 0;
    std::array<char, 65536> buffer;
    while (true) {
        const zip_int64_t count = zip_fread(file.get(), buffer.data(), buffer.size());
        if (count < 0)
            return failure(entryError(entry, zip_file_get_error(file.get())));
        if (count == 0)
            return size;
        size += static_cast<std::uint64_t>(count);
        bytes_ += static_cast<std::uint64_t>(count);
        if (bytes_ > options_.sizeLimit) {
            return failure(ErrorKind::PathAccess, fmt::format("{}: the archive unpacks to more than {} bytes",
                                                              readable(archive_.native()), options_.sizeLimit));
        }
        if (auto taken = take({buffer.data(), static_cast<std::size_t>(count)}); !taken)
            return failure(taken.error());
    }
}

Result<void> Extraction::tryAll() {
    for (auto& entry : entries_) {
        const auto size = unpack(entry, [](std::string_view) { return Result<void>(); });
        if (!size)
            return failure(size.error());
        entry.size = *size;
    }
    bytes_ = 0;
    return {};
}

// The names that stood in a folder before this extraction wrote there, by their folded form.
const Extraction::Names& Extraction::namesIn(const NativePath& folder) {
    const auto [at, added] = folders_.try_emplace(folder.native());
    if (!added)
        return at->second;
    if (const auto names = listEntries(folder)) {
        for (const auto& name : *names) at->second.emplace(foldedName(name), name);
    }
    return at->second;
}

// A file of the same name in another case: on the systems that share the folder both are one file.
NativePath Extraction::otherCaseOf(const NativePath& path) {
    const Names& names = namesIn(path.parent_path());
    const auto [first, last] = names.equal_range(foldedName(path.filename().native()));
    const auto other = std::find_if(first, last, [&](const auto& name) { return name.second != path.filename(); });
    return other == last ? NativePath() : path.parent_path() / other->second;
}

Result<void> Extraction::checkInside(const NativePath& path) const {
    const auto root = resolvedPath(target_);
    if (!root)
        return failure(ErrorKind::PathAccess, root.error().text);
    const auto real = resolvedPath(path);
    const auto inside = real ? real->lexically_relative(*root) : NativePath();
    if (inside.empty() || *inside.begin() == "..") {
        return failure(ErrorKind::PathAccess,
                       readable(path.native()) + ": a link leads out of " + readable(target_.native()));
    }
    return {};
}

// `bytes` are those of the new file, which the old one may have already; no value where they are too many to compare.
Result<void> Extraction::keepOld(const NativePath& path, std::optional<std::string_view> bytes) {
    if (options_.kept == nullptr || !pathExists(path))
        return {};
    if (bytes && fileSize(path).value_or(0) == bytes->size()) {
        const auto old = readWholeFile(path);
        if (old && *old == *bytes)
            return {};
    }
    const auto kept = options_.kept->copyAway(path);
    if (!kept)
        return failure(kept.error());
    return {};
}

Result<void> Extraction::writeOne(const Entry& entry, Extracted& done) {
    NativePath path = target_;
    for (const auto& part : entry.place) path /= part;
    if (auto inside = checkInside(path); !inside)
        return inside;
    createFolderChain(path);
    const NativePath other = otherCaseOf(path);
    if (options_.existing == ExistingFiles::Keep && (pathExists(path) || !other.empty())) {
        ++done.alreadyThere;
        return {};
    }
    if (auto written = entry.size > options_.heldBytes ? writeLarge(entry, path) : writeHeld(entry, path); !written)
        return written;
    if (!other.empty() && !isFolder(other))
        replaced_.push_back(other);
    done.files.push_back(std::move(path));
    return {};
}

Result<void> Extraction::writeHeld(const Entry& entry, const NativePath& path) {
    std::string bytes;
    const auto unpacked = unpack(entry, [&](std::string_view piece) -> Result<void> {
        if (bytes.size() + piece.size() > options_.heldBytes)  // the archive was another one a moment ago
            return failure(ErrorKind::PathAccess, readable(archive_.native()) + " changes while it is read");
        bytes += piece;
        return {};
    });
    if (!unpacked)
        return failure(unpacked.error());
    return keepOld(path, bytes).and_then([&] { return save(path, bytes, entry.place.size() > 1); });
}

Result<void> Extraction::writeLarge(const Entry& entry, const NativePath& path) {
    const NativePath temporary = target_ / temporaryName();
    auto file = File::createNew(temporary);
    if (!file)
        return failure(file.error());
    auto written = unpack(entry, [&file](std::string_view piece) { return file->write(piece); })
                       .and_then([&](std::uint64_t) { return file->sync(); })
                       .and_then([&] { return file->close(); })
                       .and_then([&] { return keepOld(path, std::nullopt); })
                       .and_then([&] { return renameFile(temporary, path); });
    if (written)
        syncFolder(path.parent_path());
    else
        passOver(removeFile(temporary), "a name that no listing gives");
    return written;
}

// New files wait for each other; one that is replaced is saved by itself. The folder above the target folder is none of
// ours, so a file that stands directly in the target waits there.
Result<void> Extraction::save(const NativePath& path, const std::string& bytes, bool inSubfolder) {
    if (pathExists(path))
        return saveWholeFile(path, bytes, inSubfolder ? TemporaryPlace::AboveFolder : TemporaryPlace::Beside);
    return batch_.add(path, bytes, target_);
}

// The same names in another case: the new files take their place.
void Extraction::removeReplaced() {
    for (const auto& other : replaced_) {
        if (options_.kept != nullptr)
            passOver(options_.kept->moveAway(other), "the new file is found first");
        else
            passOver(removeFile(other), "the new file is found first");
    }
}

Result<Extracted> Extraction::writeAll() {
    Extracted done;
    for (const auto& entry : entries_) {
        const std::size_t waiting = batch_.size();
        if (auto written = writeOne(entry, done); !written)
            return failure(written.error());
        advance(batch_.size() > waiting ? 1 : 2);
    }
    if (auto committed = batch_.commit([this] { advance(1); }); !committed)
        return failure(committed.error());
    removeReplaced();
    return done;
}

// Every file has two steps, its bytes and its name: on a share the second takes as long as the first.
void Extraction::advance(std::size_t steps) {
    steps_ += steps;
    if (options_.progress)
        options_.progress(100.0 * static_cast<double>(steps_) / static_cast<double>(2 * entries_.size()));
}

}  // namespace

Result<Extracted> extractArchive(const NativePath& archive, const NativePath& targetFolder,
                                 const ExtractOptions& options) {
    return Extraction(archive, targetFolder, options).run();
}

Result<std::vector<std::string>> listArchive(const NativePath& archive) {
    const auto handle = openZip(archive);
    if (!handle)
        return failure(handle.error());
    std::vector<std::string> names;
    const zip_int64_t count = zip_get_num_entries(handle->get(), 0);
    for (zip_int64_t i = 0; i < count; ++i) {
        const char* name = zip_get_name(handle->get(), static_cast<zip_uint64_t>(i), 0);
        names.emplace_back(name == nullptr ? "" : name);
    }
    return names;
}

}  // namespace quillon
