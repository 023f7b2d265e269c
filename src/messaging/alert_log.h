// SPDX-License-Identifier: MIT
#pragma once

// The messenger's log of alerts: a file of bounded size that its user alone can read, since alerts name customers'
// jobs. When it is full it becomes `<file>.1`, in the place of an older one, so that whatever the network sends the two
// never take more than twice the bound.

#include <cstdint>
#include <string_view>

#include "platform/file.h"
#include "platform/result.h"

namespace quillon {

/// In MiB, when nothing else is asked for.
inline constexpr std::int32_t kAlertLogSize = 16;

class AlertLog {
public:
    /// `limit` is the largest size of the file, in bytes.
    AlertLog(NativePath file, std::uint64_t limit) : file_(std::move(file)), limit_(limit) {}

    /// Makes the file when it is missing, with the mode 0600. A failure tells at the start what would fail at an alert.
    [[nodiscard]] Result<void> open() const { return add({}); }

    /// Appends a record, whole or not at all. Something that is no regular file is never put aside.
    [[nodiscard]] Result<void> add(std::string_view record) const;

private:
    [[nodiscard]] bool isFull(std::size_t more) const;

    NativePath file_;
    std::uint64_t limit_;
};

}  // namespace quillon
