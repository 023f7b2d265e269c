// SPDX-License-Identifier: MIT
#include "setup/stored_time.h"

#include <cstdlib>

#include "platform/whole_file.h"

namespace quillon {

namespace {

constexpr std::int64_t kCoarsestStep = 2;  // seconds

}  // namespace

bool isSameStoredTime(FileTime stored, FileTime original, const StoreTime& store) {
    if (stored == original)
        return true;
    if (std::abs(stored.seconds - original.seconds) > kCoarsestStep)
        return false;
    const auto readBack = store(original);
    return readBack && *readBack == stored;
}

TimeProbe::~TimeProbe() {
    if (!file_.empty())
        passOver(removeFile(file_), "the name of a save in progress is no data file");
}

bool TimeProbe::makeFile() {
    if (!file_.empty() || failed_)
        return !failed_;
    const NativePath name = folder_ / temporaryName();
    auto file = File::createNew(name);
    failed_ = !file || !file->close();
    if (file)
        file_ = name;
    return !failed_;
}

std::optional<FileTime> TimeProbe::store(FileTime time) {
    if (!makeFile() || !setModificationTime(file_, time))
        return std::nullopt;
    const auto readBack = modificationTime(file_);
    return readBack ? std::optional<FileTime>(*readBack) : std::nullopt;
}

}  // namespace quillon
