// SPDX-License-Identifier: MIT
#include "app/kept_files.h"

#include <array>

#include <fmt/format.h>

#include "app/folder_structure.h"
#include "platform/folders.h"
#include "platform/whole_file.h"
#include "text/list_text.h"

namespace quillon {

namespace {

// Streams, as a list may be larger than the memory.
Result<void> copyBytes(const NativePath& from, const NativePath& to) {
    auto source = File::openForReading(from);
    if (!source)
        return failure(source.error());
    auto target = File::createNew(to);
    if (!target)
        return failure(target.error());
    std::array<std::byte, 65536> buffer;
    while (true) {
        const auto count = source->read(buffer);
        if (!count)
            return failure(count.error());
        if (auto written = target->write(std::span<const std::byte>(buffer.data(), *count)); !written)
            return written;
        if (*count < buffer.size())
            break;
    }
    return target->sync().and_then([&] { return target->close(); }).and_then([&]() -> Result<void> {
        const auto time = modificationTime(from);
        if (time)
            passOver(setModificationTime(to, *time), "the bytes are kept; a volume may have no such times");
        syncFolder(to.parent_path());
        return {};
    });
}

NativePath relativePlace(const NativePath& file, const NativePath& root) {
    const NativePath relative = file.lexically_relative(root);
    const bool inside = !relative.empty() && *relative.begin() != "..";
    return inside ? relative : file.filename();
}

}  // namespace

NativePath evidenceBeside(const NativePath& list) {
    NativePath evidence = list;
    return evidence.replace_extension(kEvidenceEnding);
}

NativePath earlierEvidenceBeside(const NativePath& list) {
    return evidenceBeside(list) += "-earlier";
}

NativePath journalOf(const NativePath& evidence) {
    NativePath journal = evidence;
    return journal += "-journal";
}

std::string KeptFiles::momentFolder() {
    if (by_ == KeptBy::File || moment_.empty()) {
        const LocalTime now = clock_.now();
        moment_ = fmt::format("{:04}-{:02}-{:02} {:02}.{:02}.{:02}", now.year, now.month, now.day, now.hour, now.minute,
                              now.second);
    }
    return moment_;
}

Result<NativePath> KeptFiles::placeFor(const NativePath& file) {
    const NativePath& local = installation_.paths().localPath;
    const NativePath root = local.empty() ? file.parent_path() : local;
    const NativePath wanted = root / "Kept" / momentFolder() / relativePlace(file, root);
    createFolderChain(wanted);
    if (!isFolder(wanted.parent_path()))
        return failure(ErrorKind::PathAccess, readable(wanted.parent_path().native()) + " cannot be created");
    NativePath place = wanted;
    for (int i = 2; pathExists(place); ++i) {  // two files of one name within one second
        place = wanted;
        place += fmt::format(" ({})", i);
    }
    return place;
}

Result<NativePath> KeptFiles::moveAway(const NativePath& file) {
    const auto place = placeFor(file);
    if (!place)
        return failure(place.error());
    if (renameFile(file, *place)) {
        syncFolder(place->parent_path());
        return *place;
    }
    // Another volume: the file goes only when its copy is on the medium.
    if (auto copied = copyBytes(file, *place); !copied) {
        passOver(removeFile(*place), "a cut copy keeps nothing");
        return failure(copied.error());
    }
    if (auto removed = removeFile(file); !removed)
        return failure(removed.error());
    return *place;
}

Result<std::optional<NativePath>> KeptFiles::moveEvidenceAway(const NativePath& list) {
    const NativePath evidence = evidenceBeside(list);
    if (!pathExists(evidence))
        return std::optional<NativePath>();
    const auto place = moveAway(evidence);
    if (!place)
        return failure(place.error());
    if (pathExists(journalOf(evidence)))
        passOver(renameFile(journalOf(evidence), journalOf(*place)), "what was committed is whole without it");
    return std::optional<NativePath>(*place);
}

Result<std::optional<NativePath>> KeptFiles::copyAway(const NativePath& file) {
    if (!pathExists(file))
        return std::optional<NativePath>();
    const auto place = placeFor(file);
    if (!place)
        return failure(place.error());
    if (auto copied = copyBytes(file, *place); !copied) {
        passOver(removeFile(*place), "a cut copy keeps nothing");
        return failure(copied.error());
    }
    return std::optional<NativePath>(*place);
}

}  // namespace quillon
