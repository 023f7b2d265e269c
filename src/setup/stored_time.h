// SPDX-License-Identifier: MIT
#pragma once

// Volumes store modification times in steps: 1 ns, 100 ns on network shares, 2 s on memory sticks. A copy has the time
// of its source only as far as its volume can tell, and is the same state of the file all the same.

#include <functional>
#include <optional>

#include "platform/file.h"
#include "platform/folders.h"

namespace quillon {

/// Tells what a volume makes of a time that is stored there; no value when it cannot be told.
using StoreTime = std::function<std::optional<FileTime>(FileTime)>;

/// True when `stored` equals `original`, or is what the volume makes of it. `store` is asked only about times that are
/// so close that steps can explain the difference; without an answer only equal times are the same.
[[nodiscard]] bool isSameStoredTime(FileTime stored, FileTime original, const StoreTime& store);

/// Stores times at a file of its own in a folder and reads them back. The file is made when it is first needed, under
/// a name that no listing gives, and goes with the object.
class TimeProbe {
public:
    explicit TimeProbe(NativePath folder) : folder_(std::move(folder)) {}
    ~TimeProbe();
    TimeProbe(const TimeProbe&) = delete;
    TimeProbe& operator=(const TimeProbe&) = delete;

    [[nodiscard]] std::optional<FileTime> store(FileTime time);

private:
    [[nodiscard]] bool makeFile();

    NativePath folder_;
    NativePath file_;
    bool failed_ = false;
};

}  // namespace quillon
