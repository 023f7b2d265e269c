// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace quillon {

/// Where a pass over many files shows how far it is: a bar and a line with the file in work.
class ProgressHost {
public:
    virtual ~ProgressHost() = default;
    virtual void progressRange(std::int64_t maximum) = 0;
    virtual void progressValue(std::int64_t value) = 0;
    /// The line under the log: UTF-8, a path already in readable form.
    virtual void currentFile(const std::string& text) = 0;
    /// True when the rest of the pass is not wanted any more.
    [[nodiscard]] virtual bool cancelled() const { return false; }
};

}  // namespace quillon
