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
    entries_.push_back({digestOf(path), modified});
    return entries_.size() < kEntriesAtOnce ? Result<void>() : flush();
}

Result<void> RowTimes::flush() {
    const auto bytes = std::as_bytes(std::span(entries_));
    auto written = file_.write(bytes);
    entries_.clear();
    return written;
}

std::optional<std::int64_t> RowTimes::of(std::string_view path) {
    if (!reading_) {
        reading_ = true;
        if (!flush() || !file_.seek(0))
            return std::nullopt;
    }
    if (next_ == entries_.size() && !fill())
        return std::nullopt;
    if (entries_[next_].path != digestOf(path))
        return std::nullopt;
    return entries_[next_++].modified;
}

bool RowTimes::fill() {
    next_ = 0;
    entries_.resize(kEntriesAtOnce);
    const auto count = file_.read(std::as_writable_bytes(std::span(entries_)));
    entries_.resize(count ? *count / sizeof(Entry) : 0);
    return !entries_.empty();
}

}  // namespace quillon
