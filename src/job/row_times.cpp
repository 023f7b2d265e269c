// SPDX-License-Identifier: MIT
#include "job/row_times.h"

#include "evidence/digest.h"
#include "platform/folders.h"
#include "platform/whole_file.h"

namespace quillon {

namespace {

constexpr std::size_t kEntriesAtOnce = 4096;

std::int64_t digestOf(std::string_view path) {
    Digest digest;
    digest.add(path);
    return digest.value();
}

}  // namespace

Result<RowTimes> RowTimes::create(const NativePath& folder) {
    const NativePath path = folder / temporaryName();
    auto made = File::createNew(path, 0600);
    if (!made)
        return failure(made.error());
    auto file = File::openForChanging(path);
    if (auto removed = removeFile(path); !removed)
        return failure(removed.error());
    if (!file)
        return failure(file.error());
    return RowTimes(std::move(*file));
}

Result<void> RowTimes::add(std::string_view path, std::int64_t modified) {
    added_.push_back({digestOf(path), modified});
    return added_.size() < kEntriesAtOnce ? Result<void>() : flush();
}

Result<void> RowTimes::flush() {
    auto written = file_.write(std::as_bytes(std::span(added_)));
    added_.clear();
    return written;
}

std::optional<std::int64_t> RowTimes::find(Place& place, std::string_view path) {
    if (!reading_) {
        reading_ = true;
        if (!flush())
            return std::nullopt;
    }
    if (place.next == place.entries.size() && !fill(place))
        return std::nullopt;
    if (place.entries[place.next].path != digestOf(path))
        return std::nullopt;
    return place.entries[place.next++].modified;
}

bool RowTimes::fill(Place& place) {
    place.next = 0;
    place.entries.resize(kEntriesAtOnce);
    const auto count =
        file_.seek(place.offset).and_then([&] { return file_.read(std::as_writable_bytes(std::span(place.entries))); });
    place.entries.resize(count ? *count / sizeof(Entry) : 0);
    place.offset += place.entries.size() * sizeof(Entry);
    return !place.entries.empty();
}

}  // namespace quillon
